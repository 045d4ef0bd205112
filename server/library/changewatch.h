#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace velmora::server {

// What the kernel (inotify) tells of changes in watched folders. Nothing comes from network shares, and watches are
// limited, so folders are looked through from time to time as well. One thread, but for ring().
class ChangeWatch {
public:
    struct Changes {
        std::set<std::pair<int64_t, std::string>> files; // music that was written or moved in: root, path in it
        std::set<int64_t> roots;                         // in which something else changed
        bool isIncomplete = false;                       // more happened than the kernel kept
    };

    ChangeWatch();
    ~ChangeWatch();
    ChangeWatch(const ChangeWatch &) = delete;
    ChangeWatch &operator=(const ChangeWatch &) = delete;

    // Watches an open folder, which lies at `path` in this root. Again after it was moved: the new path counts.
    void watch(int64_t root, int folder, const std::string &path);
    // Forgets the folders of all other roots.
    void keepOnly(const std::set<int64_t> &roots);
    // What has changed since the last call.
    Changes take();

    // Returns when something changes, when ring() is called, or when the time is over.
    void wait(std::chrono::milliseconds longest);
    // Ends the present wait, or the next one. Any thread.
    void ring();

private:
    int m_inotify = -1;
    int m_bell = -1;                                         // an event that ring() raises
    std::map<int, std::map<int64_t, std::string>> m_folders; // by watch: a folder may lie in several roots
};

} // namespace velmora::server
