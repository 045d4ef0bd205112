#pragma once

#include <functional>

#include <csignal>
#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

// Kills a child process in the middle of what it writes, to see what is left of its files.
namespace killpoint {

enum class Child { Killed, Finished, Crashed, NotTraced };

// Whether the system call changes a file. Writes to standard output and standard error do not count.
inline bool isWriting(const __ptrace_syscall_info &call)
{
    const auto &argument = call.entry.args;
    switch (call.entry.nr) {
    case SYS_write:
    case SYS_pwrite64:
    case SYS_writev:
        return argument[0] > STDERR_FILENO;
    case SYS_openat:
        return (argument[2] & (O_WRONLY | O_RDWR | O_CREAT | O_TRUNC)) != 0;
#ifdef SYS_open
    case SYS_open:
        return (argument[1] & (O_WRONLY | O_RDWR | O_CREAT | O_TRUNC)) != 0;
    case SYS_rename:
    case SYS_unlink:
    case SYS_link:
    case SYS_chmod:
    case SYS_mkdir:
#endif
#ifdef SYS_renameat
    case SYS_renameat:
#endif
    case SYS_renameat2:
    case SYS_unlinkat:
    case SYS_linkat:
    case SYS_fchmod:
    case SYS_fchmodat:
    case SYS_mkdirat:
    case SYS_ftruncate:
    case SYS_fallocate:
    case SYS_fsync:
    case SYS_fdatasync:
        return true;
    default:
        return false;
    }
}

// Runs `change` in a child that gets SIGKILL in place of its writing system call of this number, counted from 0.
// Finished: it has fewer. NotTraced: this machine does not allow it.
inline Child killedAt(int number, const std::function<void()> &change)
{
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
            ::_exit(1);
        ::raise(SIGSTOP);
        change();
        ::_exit(0);
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFSTOPPED(status))
        return Child::NotTraced;
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    constexpr int systemCall = SIGTRAP | 0x80;
    bool isTraced = false;
    for (int signal = 0;;) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, signal);
        if (::waitpid(child, &status, 0) != child || !WIFSTOPPED(status))
            break;
        signal = WSTOPSIG(status) == systemCall ? 0 : WSTOPSIG(status);
        __ptrace_syscall_info call{};
        if (WSTOPSIG(status) != systemCall || ::ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof call, &call) <= 0)
            continue;
        isTraced = true;
        if (call.op == PTRACE_SYSCALL_INFO_ENTRY && isWriting(call) && number-- == 0)
            ::kill(child, SIGKILL);
    }
    if (!isTraced)
        return Child::NotTraced;
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL)
        return Child::Killed;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? Child::Finished : Child::Crashed;
}

} // namespace killpoint
