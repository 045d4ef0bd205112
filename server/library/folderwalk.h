#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace velmora::server {

// A file as the folder shows it; when two of these are equal, its content is taken to be.
struct FileStamp {
    int64_t size = 0;
    int64_t mtimeNs = 0;
    int64_t inode = 0;
    bool operator==(const FileStamp &) const = default;
};

struct FoundFile {
    std::string path; // in the root, any bytes
    FileStamp stamp;
};

struct WalkResult {
    bool isStopped = false;
    int64_t files = 0;               // that may be music
    int64_t otherFiles = 0;          // everything else
    std::vector<std::string> unread; // folders that could not be listed to their end
};

// Looks through a folder and all in it for files with a name that music has. Follows links, each folder once; opens no
// file; goes past what is hidden, excluded, deeper than 32 folders, or beside a file named ".nomedia" or
// ".velmoraignore". Never throws for what it finds.
class FolderWalk {
public:
    static constexpr int mostDepth = 32;

    explicit FolderWalk(std::vector<std::string> excluded = {});

    // `take` gets the files of one folder after the other, in the order of their names; false stops the walk. `root` is
    // an open folder and stays the caller's.
    // `enter` is told of every open folder before its files.
    WalkResult walk(int root, const std::function<bool(std::vector<FoundFile>)> &take,
                    const std::function<void(int folder)> &enter = {}) const;

    static bool isMusicName(std::string_view name);

private:
    class Run;
    std::vector<std::string> m_excluded;
};

// A regular file below an open folder; -1 when it cannot be opened or is something else (then nothing waits for it).
int openRegular(int root, const std::string &path, FileStamp *stamp);

} // namespace velmora::server
