#include "server/library/rootprobe.h"

#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <mutex>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace velmora::server {

struct RootProbe::Shared {
    std::mutex mutex; // guards what follows
    std::condition_variable hasEnded;
    bool isDone = false;
    bool isAbandoned = false; // nobody waits: the thread closes what it opened
    Answer answer;
};

namespace {

RootProbe::Answer lookAt(const std::filesystem::path &root)
{
    RootProbe::Answer answer;
    answer.folder = ::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
    if (answer.folder < 0) {
        answer.problem = errno == ENOENT    ? "there is no such folder"
                         : errno == EACCES  ? "the service may not read it"
                         : errno == ENOTDIR ? "it is not a folder"
                                            : "it cannot be opened: " + std::generic_category().message(errno);
        return answer;
    }
    const int listed = ::openat(answer.folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR *directory = listed < 0 ? nullptr : ::fdopendir(listed);
    if (!directory) {
        if (listed >= 0)
            ::close(listed);
        ::close(answer.folder);
        return {-1, "the service may not read it", false};
    }
    errno = 0;
    answer.isEmpty = true;
    while (const dirent *entry = ::readdir(directory)) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
            answer.isEmpty = false;
            break;
        }
    }
    const int error = errno;
    ::closedir(directory);
    if (answer.isEmpty && error != 0) {
        ::close(answer.folder);
        return {-1, "it cannot be listed: " + std::generic_category().message(error), false};
    }
    return answer;
}

} // namespace

RootProbe::RootProbe(std::chrono::milliseconds patience)
    : m_patience(patience)
{
}

RootProbe::Answer RootProbe::look(const std::filesystem::path &root)
{
    const auto standing = m_standing.find(root);
    if (standing != m_standing.end()) {
        const std::lock_guard guard(standing->second->mutex);
        if (!standing->second->isDone)
            return {-1, "it does not answer", false, true};
    }
    auto shared = std::make_shared<Shared>();
    m_standing[root] = shared;
    std::thread([shared, root] {
        Answer answer = lookAt(root);
        const std::lock_guard guard(shared->mutex);
        if (shared->isAbandoned && answer.folder >= 0)
            ::close(answer.folder);
        else
            shared->answer = std::move(answer);
        shared->isDone = true;
        shared->hasEnded.notify_all();
    }).detach();
    std::unique_lock guard(shared->mutex);
    if (shared->hasEnded.wait_for(guard, m_patience, [&] { return shared->isDone; }))
        return shared->answer;
    shared->isAbandoned = true;
    return {-1, "it does not answer", false, true};
}

} // namespace velmora::server
