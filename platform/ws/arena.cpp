#include "arena.h"

#include <algorithm>
#include <cstring>

namespace velmora::ws {

namespace {
constexpr std::size_t chunkSize = 2048;
constexpr std::size_t alignment = alignof(std::max_align_t);
} // namespace

void wipe(void *memory, std::size_t size)
{
    explicit_bzero(memory, size);
}

void forget(SecretText &text)
{
    SecretText().swap(text);
}

Arena::~Arena()
{
    for (Chunk &chunk : m_chunks) {
        if (chunk.memory)
            wipe(chunk.memory.get(), chunk.used);
    }
}

void *Arena::allocate(std::size_t size)
{
    const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
    if (m_chunks.empty() || m_chunks.back().size - m_chunks.back().used < rounded) {
        const std::size_t wanted = std::max(rounded, chunkSize);
        m_chunks.push_back({std::make_unique<char[]>(wanted), wanted, 0});
    }
    Chunk &chunk = m_chunks.back();
    void *memory = chunk.memory.get() + chunk.used;
    chunk.used += rounded;
    return memory;
}

char *Arena::copy(const char *bytes, std::size_t size)
{
    char *memory = static_cast<char *>(allocate(size + 1));
    if (size > 0) // an empty view may have no address
        std::memcpy(memory, bytes, size);
    return memory;
}

char *Arena::text(std::string_view text)
{
    return copy(text.data(), text.size());
}

} // namespace velmora::ws
