#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace velmora::demo {

// A file that appears complete or not at all: it is written under a temporary name in the same folder, then renamed.
// Only the user of the service can read it.
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
