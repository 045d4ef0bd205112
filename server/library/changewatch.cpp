#include "server/library/changewatch.h"

#include "server/library/folderwalk.h"

#include <filesystem>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace velmora::server {

namespace {

constexpr uint32_t watched = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_ONLYDIR;

} // namespace

ChangeWatch::ChangeWatch()
    : m_inotify(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
    , m_bell(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
}

ChangeWatch::~ChangeWatch()
{
    ::close(m_inotify);
    ::close(m_bell);
}

void ChangeWatch::watch(int64_t root, int folder, const std::string &path)
{
    // The descriptor's own name: the folder's may be longer than a path can be. Where watches run out, the regular
    // scan notices what changed.
    const std::string name = "/proc/self/fd/" + std::to_string(folder);
    const int watch = ::inotify_add_watch(m_inotify, name.c_str(), watched);
    if (watch >= 0)
        m_folders[watch][root] = path;
}

void ChangeWatch::keepOnly(const std::set<int64_t> &roots)
{
    for (auto folder = m_folders.begin(); folder != m_folders.end();) {
        std::erase_if(folder->second, [&](const auto &place) { return !roots.contains(place.first); });
        if (folder->second.empty()) {
            ::inotify_rm_watch(m_inotify, folder->first);
            folder = m_folders.erase(folder);
        } else {
            ++folder;
        }
    }
}

ChangeWatch::Changes ChangeWatch::take()
{
    uint64_t rung = 0;
    [[maybe_unused]] const ssize_t cleared = ::read(m_bell, &rung, sizeof rung);
    Changes changes;
    alignas(inotify_event) std::array<char, 16 * 1024> buffer;
    for (ssize_t length = 0; (length = ::read(m_inotify, buffer.data(), buffer.size())) > 0;) {
        for (const char *at = buffer.data(); at < buffer.data() + length;) {
            const auto *event = reinterpret_cast<const inotify_event *>(at);
            at += sizeof(inotify_event) + event->len;
            if (event->mask & IN_Q_OVERFLOW)
                changes.isIncomplete = true;
            const auto folder = m_folders.find(event->wd);
            if (folder == m_folders.end())
                continue;
            const std::string name = event->len > 0 ? event->name : "";
            const bool isFile = !name.empty() && !(event->mask & IN_ISDIR);
            const bool isMusic = isFile && FolderWalk::isMusicName(name);
            const bool isWritten = event->mask & (IN_CLOSE_WRITE | IN_MOVED_TO);
            // A new file is of interest once it has been written, and many files never are.
            const bool isIgnored = isFile && ((event->mask & IN_CREATE) || !(isMusic || FolderWalk::hasMeaning(name)));
            for (const auto &[root, path] : folder->second) {
                if (isMusic && isWritten)
                    changes.files.emplace(root, (std::filesystem::path(path) / name).native());
                else if (!isIgnored)
                    changes.roots.insert(root);
            }
            if (event->mask & IN_IGNORED)
                m_folders.erase(folder);
        }
    }
    return changes;
}

void ChangeWatch::wait(std::chrono::milliseconds longest)
{
    std::array<pollfd, 2> ends = {pollfd{m_inotify, POLLIN, 0}, pollfd{m_bell, POLLIN, 0}};
    ::poll(ends.data(), ends.size(), static_cast<int>(longest.count()));
}

void ChangeWatch::ring()
{
    const uint64_t once = 1;
    [[maybe_unused]] const ssize_t rung = ::write(m_bell, &once, sizeof once);
}

} // namespace velmora::server
