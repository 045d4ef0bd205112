// Loaded before libc: appends every change of files below $DISK_FOLDER to $DISK_RECORD. Syncing is recorded and not
// done. A change is recorded after it was made, so that a program that is killed never has a record of what it did not
// do. Not recorded: shared mappings (the database's index of its log, which a power cut always takes).

#include "diskrecorder.h"

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

using namespace velmora::diskrecord;

std::array<std::atomic<bool>, 4096> s_isWatched;

template <typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

bool isBelow(const char *path)
{
    static const char *folder = std::getenv("DISK_FOLDER");
    return folder && path && std::string_view(path).starts_with(folder);
}

bool isWatched(int descriptor)
{
    return descriptor >= 0 && static_cast<size_t>(descriptor) < s_isWatched.size() &&
           s_isWatched[static_cast<size_t>(descriptor)];
}

void note(Call call, int descriptor, uint64_t offset, std::string_view content)
{
    static std::mutex mutex;
    static int record = -1;
    const std::lock_guard guard(mutex);
    const auto append = [](Call what, int where, uint64_t at, std::string_view bytes) {
        const Header header{what, where, at, static_cast<uint32_t>(bytes.size())};
        std::string text(reinterpret_cast<const char *>(&header), sizeof header);
        text.append(bytes);
        ::syscall(SYS_write, record, text.data(), text.size());
    };
    if (record < 0) {
        const char *file = std::getenv("DISK_RECORD");
        record = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, file ? file : "/dev/null",
                                            O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
        append(Call::Begin, -1, 0, {});
    }
    append(call, descriptor, offset, content);
}

int opened(int descriptor, const char *path)
{
    if (descriptor >= 0 && static_cast<size_t>(descriptor) < s_isWatched.size() && isBelow(path)) {
        s_isWatched[static_cast<size_t>(descriptor)] = true;
        note(Call::Open, descriptor, 0, path);
    }
    return descriptor;
}

int synced(int descriptor, const char *name)
{
    if (!isWatched(descriptor))
        return next<int(int)>(name)(descriptor);
    note(Call::Sync, descriptor, 0, {});
    return 0;
}

int truncated(int result, int descriptor, off_t size)
{
    if (result == 0 && isWatched(descriptor))
        note(Call::Truncate, descriptor, static_cast<uint64_t>(size), {});
    return result;
}

ssize_t written(ssize_t count, int descriptor, const void *bytes, off_t offset)
{
    if (count > 0 && isWatched(descriptor))
        note(Call::Write, descriptor, static_cast<uint64_t>(offset),
             {static_cast<const char *>(bytes), static_cast<size_t>(count)});
    return count;
}

int named(int result, Call call, const char *path, const char *other = nullptr)
{
    if (result == 0 && isBelow(path))
        note(call, -1, 0, other ? std::string(path) + "\n" + other : path);
    return result;
}

} // namespace

// The names and types of libc.
extern "C" {

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return opened(next<int(const char *, int, ...)>("open")(path, flags, mode), path);
}

int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return opened(next<int(const char *, int, ...)>("open64")(path, flags, mode), path);
}

int close(int descriptor)
{
    if (isWatched(descriptor)) {
        s_isWatched[static_cast<size_t>(descriptor)] = false;
        note(Call::Close, descriptor, 0, {});
    }
    return next<int(int)>("close")(descriptor);
}

ssize_t write(int descriptor, const void *bytes, size_t count)
{
    const off_t offset = isWatched(descriptor) ? ::lseek(descriptor, 0, SEEK_CUR) : 0;
    return written(next<ssize_t(int, const void *, size_t)>("write")(descriptor, bytes, count), descriptor, bytes,
                   offset);
}

ssize_t pwrite(int descriptor, const void *bytes, size_t count, off_t offset)
{
    return written(next<ssize_t(int, const void *, size_t, off_t)>("pwrite")(descriptor, bytes, count, offset),
                   descriptor, bytes, offset);
}

ssize_t pwrite64(int descriptor, const void *bytes, size_t count, off64_t offset)
{
    return written(next<ssize_t(int, const void *, size_t, off64_t)>("pwrite64")(descriptor, bytes, count, offset),
                   descriptor, bytes, offset);
}

int ftruncate(int descriptor, off_t size)
{
    return truncated(next<int(int, off_t)>("ftruncate")(descriptor, size), descriptor, size);
}

int ftruncate64(int descriptor, off64_t size)
{
    return truncated(next<int(int, off64_t)>("ftruncate64")(descriptor, size), descriptor, size);
}

int fsync(int descriptor)
{
    return synced(descriptor, "fsync");
}

int fdatasync(int descriptor)
{
    return synced(descriptor, "fdatasync");
}

int rename(const char *from, const char *to)
{
    return named(next<int(const char *, const char *)>("rename")(from, to), Call::Rename, from, to);
}

int link(const char *from, const char *to)
{
    return named(next<int(const char *, const char *)>("link")(from, to), Call::Link, from, to);
}

int unlink(const char *path)
{
    return named(next<int(const char *)>("unlink")(path), Call::Unlink, path);
}

int mkdir(const char *path, mode_t mode)
{
    return named(next<int(const char *, mode_t)>("mkdir")(path, mode), Call::MakeFolder, path);
}

} // extern "C"
