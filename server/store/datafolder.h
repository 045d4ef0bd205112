#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora::server {

// Another velmora-server uses the folder.
class FolderInUse : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The folder that the service keeps everything in, for its owner's eyes only, and for one program at a time: the lock
// lasts as long as this object and ends with the process, however that ends.
class DataFolder {
public:
    // Makes the folder when it does not exist. A folder of the service's that is open to other users is closed to them.
    // Throws FolderInUse or std::runtime_error, with a text for the person who started the program: it is in use, it
    // belongs to another user, or it is open to others and holds something else than the service's data.
    explicit DataFolder(const std::filesystem::path &folder);
    ~DataFolder();
    DataFolder(const DataFolder &) = delete;
    DataFolder &operator=(const DataFolder &) = delete;

    // What was open to other users and is closed now: a sentence each, for the log.
    const std::vector<std::string> &mended() const { return m_mended; }

    static constexpr const char *lockName = "lock"; // holds the process id; stays when the program ends
    static constexpr const char *databaseName = "velmora.db";

private:
    int m_lock = -1;
    std::vector<std::string> m_mended;
};

// Brings the names in a folder to the disk: of files that were made, renamed or removed. False when it cannot.
bool syncFolder(const std::filesystem::path &folder);

// Why a file with a secret is not good enough: it cannot be read, or others can read or change it. Nothing when it is.
// The group may read a file that belongs to root, as it does with the keys of the system's certificates.
std::optional<std::string> secretFileProblem(const std::filesystem::path &file);

} // namespace velmora::server
