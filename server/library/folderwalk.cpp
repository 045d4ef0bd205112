#include "server/library/folderwalk.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <memory>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::server {

namespace {

constexpr std::array musicExtensions = {"mp3", "mp2",  "flac", "ogg", "oga", "opus", "wav", "wave",
                                        "aif", "aiff", "aifc", "m4a", "m4b", "mp4",  "aac", "wma",
                                        "asf", "ape",  "wv",   "tta", "mpc", "spx",  "dsf", "dff"};

struct DirectoryCloser {
    void operator()(DIR *directory) const { ::closedir(directory); }
};

FileStamp stampOf(const struct stat &status)
{
    return {status.st_size, int64_t(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec,
            static_cast<int64_t>(status.st_ino)};
}

constexpr std::array markers = {".nomedia", ".velmoraignore"}; // nobody looks into their folder

bool isMarker(std::string_view name)
{
    return std::find(markers.begin(), markers.end(), name) != markers.end();
}

bool isExcluded(const std::vector<std::string> &patterns, const std::string &path, const std::string &name)
{
    return std::any_of(patterns.begin(), patterns.end(), [&](const std::string &pattern) {
        return ::fnmatch(pattern.c_str(), name.c_str(), 0) == 0 || ::fnmatch(pattern.c_str(), path.c_str(), 0) == 0;
    });
}

std::string lower(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return result;
}

} // namespace

class FolderWalk::Run {
public:
    Run(const std::vector<std::string> &excluded, const std::function<bool(std::vector<FoundFile>)> &take,
        const std::function<void(int, const std::string &)> &enter)
        : m_excluded(excluded)
        , m_take(take)
        , m_enter(enter)
    {
    }

    // Takes the descriptor over.
    void folder(int descriptor, const std::string &path, int depth);
    WalkResult result;

private:
    const std::vector<std::string> &m_excluded;
    const std::function<bool(std::vector<FoundFile>)> &m_take;
    const std::function<void(int, const std::string &)> &m_enter;
    std::set<std::pair<dev_t, ino_t>> m_seen;
};

void FolderWalk::Run::folder(int descriptor, const std::string &path, int depth)
{
    const std::unique_ptr<DIR, DirectoryCloser> directory(::fdopendir(descriptor));
    if (!directory) {
        ::close(descriptor);
        result.unread.push_back(path);
        return;
    }
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) {
        result.unread.push_back(path);
        return;
    }
    if (!m_seen.insert({status.st_dev, status.st_ino}).second)
        return;
    if (m_enter)
        m_enter(descriptor, path);
    std::vector<std::string> names;
    errno = 0;
    while (const dirent *entry = ::readdir(directory.get())) {
        const std::string name = entry->d_name;
        if (isMarker(name))
            return;
        // A million other files beside the music cost neither memory nor a look at each.
        const bool isOther = entry->d_type == DT_REG && !isMusicName(name) && coverRank(name) == 0;
        if (name[0] != '.' && !isOther)
            names.push_back(name);
        errno = 0;
    }
    if (errno != 0)
        result.unread.push_back(path);
    std::sort(names.begin(), names.end());

    std::vector<FoundFile> found;
    std::vector<std::pair<std::string, std::string>> folders; // name, path
    for (const std::string &name : names) {
        std::string whole = path;
        if (!path.empty())
            whole += '/';
        whole += name;
        if (isExcluded(m_excluded, whole, name))
            continue;
        if (::fstatat(descriptor, name.c_str(), &status, 0) != 0) {
            // A link to nowhere is no folder; what cannot be looked at may be one.
            if (errno != ENOENT && errno != ELOOP)
                result.unread.push_back(whole);
            continue;
        }
        if (S_ISDIR(status.st_mode)) {
            folders.emplace_back(name, whole);
        } else if (S_ISREG(status.st_mode) && isMusicName(name)) {
            ++result.files;
            found.push_back({whole, stampOf(status)});
        } else if (S_ISREG(status.st_mode) && coverRank(name) != 0) {
            found.push_back({whole, stampOf(status), true});
        }
    }
    if (!m_take(std::move(found))) {
        result.isStopped = true;
        return;
    }
    for (const auto &[name, whole] : folders) {
        if (depth == mostDepth)
            continue;
        const int next = ::openat(descriptor, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
        if (next >= 0)
            folder(next, whole, depth + 1);
        else
            result.unread.push_back(whole);
        if (result.isStopped)
            return;
    }
}

FolderWalk::FolderWalk(std::vector<std::string> excluded)
    : m_excluded(std::move(excluded))
{
}

WalkResult FolderWalk::walk(int root, const std::function<bool(std::vector<FoundFile>)> &take,
                            const std::function<void(int, const std::string &)> &enter) const
{
    Run run(m_excluded, take, enter);
    // A descriptor of its own position: the caller's would be left at its end.
    const int descriptor = ::openat(root, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        run.result.unread.emplace_back();
    else
        run.folder(descriptor, {}, 0);
    return run.result;
}

std::vector<FoundFile> FolderWalk::filesOf(int root, const std::string &folder) const
{
    std::vector<FoundFile> files;
    const std::function<bool(std::vector<FoundFile>)> take = [&](std::vector<FoundFile> found) {
        files = std::move(found);
        return false;
    };
    const std::function<void(int, const std::string &)> enter;
    const int descriptor =
        ::openat(root, folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor >= 0)
        Run(m_excluded, take, enter).folder(descriptor, folder, 0);
    return files;
}

bool FolderWalk::takes(int root, const std::string &path) const
{
    for (size_t begin = 0; begin <= path.size();) {
        const size_t end = std::min(path.find('/', begin), path.size());
        const std::string name = path.substr(begin, end - begin);
        if (name.starts_with('.') || isExcluded(m_excluded, path.substr(0, end), name))
            return false;
        const std::string folder = path.substr(0, begin);
        if (std::any_of(markers.begin(), markers.end(),
                        [&](const char *marker) { return ::faccessat(root, (folder + marker).c_str(), F_OK, 0) == 0; }))
            return false;
        begin = end + 1;
    }
    return isMusicName(path.substr(path.rfind('/') + 1));
}

int FolderWalk::coverRank(std::string_view name)
{
    constexpr std::array names = {"cover", "folder", "front"};
    const std::string whole = lower(name);
    for (size_t i = 0; i < names.size(); ++i) {
        for (const char *extension : {".jpg", ".jpeg", ".png"}) {
            if (whole == std::string(names[i]) + extension)
                return static_cast<int>(i) + 1;
        }
    }
    return 0;
}

bool FolderWalk::hasMeaning(std::string_view name)
{
    return isMarker(name) || coverRank(name) != 0;
}

bool FolderWalk::isMusicName(std::string_view name)
{
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || name.size() - dot > 6)
        return false;
    const std::string extension = lower(name.substr(dot + 1));
    return std::find(musicExtensions.begin(), musicExtensions.end(), extension) != musicExtensions.end();
}

int openRegular(int root, const std::string &path, FileStamp *stamp)
{
    const int file = ::openat(root, path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0)
        return -1;
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(file);
        return -1;
    }
    *stamp = stampOf(status);
    return file;
}

} // namespace velmora::server
