#include "atomicfile.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>
#include <utility>

namespace velmora::demo {

AtomicFile::AtomicFile(std::filesystem::path target)
    : m_target(std::move(target))
{
    std::string name = m_target.string() + ".XXXXXX";
    const int descriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (descriptor < 0)
        return;
    m_temporary = name;
    m_stream = ::fdopen(descriptor, "w+b");
    if (!m_stream)
        ::close(descriptor);
}

AtomicFile::~AtomicFile()
{
    if (m_stream)
        std::fclose(m_stream);
    if (!m_temporary.empty())
        ::unlink(m_temporary.c_str());
}

FILE *AtomicFile::takeStream()
{
    return std::exchange(m_stream, nullptr);
}

bool AtomicFile::commit()
{
    if (m_temporary.empty())
        return false;
    if (m_stream && std::fclose(takeStream()) != 0)
        return false;
    // After a power cut the new name must not name an empty file.
    const int descriptor = ::open(m_temporary.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool stored = ::fsync(descriptor) == 0;
    ::close(descriptor);
    if (!stored || std::rename(m_temporary.c_str(), m_target.c_str()) != 0)
        return false;
    m_temporary.clear();
    return true;
}

} // namespace velmora::demo
