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
    bool isCover = false; // a picture beside the music
};

struct WalkResult {
    bool isStopped = false;
    int64_t files = 0;               // that may be music
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
    // `enter` gets every open folder and its path in the root before it is listed.
    WalkResult walk(int root, const std::function<bool(std::vector<FoundFile>)> &take,
                    const std::function<void(int folder, const std::string &path)> &enter = {}) const;
    // What a walk would take of one folder, given by its path in the root; nothing when it cannot be listed.
    std::vector<FoundFile> filesOf(int root, const std::string &folder) const;
    // Whether a walk that came to the file's folder would take the file.
    bool takes(int root, const std::string &path) const;

    static bool isMusicName(std::string_view name);
    // A cover beside the music: 1 for the likeliest name, then 2, 3; 0: it is none.
    static int coverRank(std::string_view name);
    // A name that says something about the other files of its folder.
    static bool hasMeaning(std::string_view name);

private:
    class Run;
    std::vector<std::string> m_excluded;
};

// A regular file below an open folder; -1 when it cannot be opened or is something else (then nothing waits for it).
int openRegular(int root, const std::string &path, FileStamp *stamp);

} // namespace velmora::server
