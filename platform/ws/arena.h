#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Memory that is overwritten before it is freed: request records, request bodies, session tokens.
namespace velmora::ws {

void wipe(void *memory, std::size_t size);

// Owns everything that one request record points at. All of it is freed together. Not thread-safe.
class Arena {
public:
    Arena() = default;
    ~Arena();
    Arena(Arena &&) = default;
    Arena &operator=(Arena &&) = delete;

    void *allocate(std::size_t size);  // zeroed, aligned for every type; throws std::bad_alloc
    char *text(std::string_view text); // a NUL terminated copy
    char *copy(const char *bytes, std::size_t size);

    template <class T>
    T *make(std::size_t count = 1)
    {
        return static_cast<T *>(allocate(sizeof(T) * (count ? count : 1)));
    }

private:
    struct Chunk {
        std::unique_ptr<char[]> memory;
        std::size_t size;
        std::size_t used;
    };
    std::vector<Chunk> m_chunks;
};

template <class T>
struct WipingAllocator {
    using value_type = T;
    WipingAllocator() = default;
    template <class U>
    WipingAllocator(const WipingAllocator<U> &)
    {
    }
    T *allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
    void deallocate(T *memory, std::size_t count)
    {
        wipe(memory, count * sizeof(T));
        std::allocator<T>().deallocate(memory, count);
    }
    bool operator==(const WipingAllocator &) const { return true; }
};

// A short text inside the string object itself is not wiped: call reserve() before writing a secret.
using SecretText = std::basic_string<char, std::char_traits<char>, WipingAllocator<char>>;

// Frees and wipes the text. Assigning an empty text would keep the old memory, unwiped.
void forget(SecretText &text);

} // namespace velmora::ws
