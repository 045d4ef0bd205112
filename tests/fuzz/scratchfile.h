#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace fuzz {

// A folder of this process in memory where the system has one; removed at the end.
inline const std::filesystem::path &scratchFolder()
{
    struct Folder {
        std::filesystem::path path;
        Folder()
        {
            const bool hasMemory = std::filesystem::is_directory("/dev/shm");
            std::string name =
                (hasMemory ? std::filesystem::path("/dev/shm") : std::filesystem::temp_directory_path()) /
                "velmora-fuzz-XXXXXX";
            if (!::mkdtemp(name.data()))
                std::abort();
            path = name;
        }
        ~Folder()
        {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
    };
    static const Folder folder;
    return folder.path;
}

// Empties the folder and writes the input into one file.
inline std::filesystem::path onlyFile(const char *name, const uint8_t *data, size_t size)
{
    for (const auto &entry : std::filesystem::directory_iterator(scratchFolder()))
        std::filesystem::remove_all(entry.path());
    const auto path = scratchFolder() / name;
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char *>(data), std::streamsize(size));
    return path;
}

// A broken promise ends the run, as a crash does.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace fuzz
