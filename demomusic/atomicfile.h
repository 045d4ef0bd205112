#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace velmora::demo {

// A file that appears whole or not at all: written under a name of its own beside its place, then renamed. Readable by
// the service's own user only.
class AtomicFile {
public:
    explicit AtomicFile(std::filesystem::path target);
    ~AtomicFile(); // without commit() nothing is left behind
    AtomicFile(const AtomicFile &) = delete;
    AtomicFile &operator=(const AtomicFile &) = delete;

    bool isOpen() const { return m_stream != nullptr; }
    FILE *stream() const { return m_stream; }
    FILE *takeStream(); // the caller closes it before commit()
    bool commit();      // false when anything could not be written

private:
    std::filesystem::path m_target;
    std::string m_temporary; // empty when there is no such file
    FILE *m_stream = nullptr;
};

} // namespace velmora::demo
