#include "server/media/sandbox.h"

#include <cerrno>
#include <csignal>
#include <initializer_list>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace velmora::media {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

constexpr rlim_t mostCpuSeconds = 4 * 3600; // of one process, over all its files
constexpr int niceness = 10;

bool limit(__rlimit_resource_t resource, rlim_t value)
{
    const rlimit limits{value, value};
    return ::setrlimit(resource, &limits) == 0;
}

bool allow(scmp_filter_ctx filter, std::initializer_list<int> calls)
{
    for (const int call : calls) {
        // A call that this architecture does not have is none that could be made.
        const int result = seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 0);
        if (result != 0 && result != -EDOM && result != -EOPNOTSUPP)
            return false;
    }
    return true;
}

bool filterCalls()
{
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_KILL_PROCESS);
    if (!filter)
        return false;
    bool isDone = allow(filter, {SCMP_SYS(read),
                                 SCMP_SYS(pread64),
                                 SCMP_SYS(lseek),
                                 SCMP_SYS(_llseek),
                                 SCMP_SYS(fstat),
                                 SCMP_SYS(fstat64),
                                 SCMP_SYS(newfstatat),
                                 SCMP_SYS(fstatat64),
                                 SCMP_SYS(statx),
                                 SCMP_SYS(munmap),
                                 SCMP_SYS(mremap),
                                 SCMP_SYS(madvise),
                                 SCMP_SYS(brk),
                                 SCMP_SYS(write),
                                 SCMP_SYS(recvmsg),
                                 SCMP_SYS(close),
                                 SCMP_SYS(futex),
                                 SCMP_SYS(futex_time64),
                                 SCMP_SYS(exit),
                                 SCMP_SYS(exit_group),
                                 SCMP_SYS(rt_sigreturn),
                                 SCMP_SYS(sigreturn),
                                 SCMP_SYS(rt_sigprocmask),
                                 SCMP_SYS(clock_gettime),
                                 SCMP_SYS(clock_gettime64),
                                 SCMP_SYS(getrandom),
                                 SCMP_SYS(sysinfo),
                                 SCMP_SYS(restart_syscall)});
    // Memory, but none that can be run.
    for (const int call : {SCMP_SYS(mmap), SCMP_SYS(mmap2), SCMP_SYS(mprotect)}) {
        const int result = seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 1, SCMP_A2(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0));
        isDone = isDone && (result == 0 || result == -EDOM || result == -EOPNOTSUPP);
    }
    // Decoders look for companions of unknown files; dying of it would cost a new process each time.
    for (const int call : {SCMP_SYS(open), SCMP_SYS(openat)}) {
        const int result = seccomp_rule_add(filter, SCMP_ACT_ERRNO(EACCES), call, 0);
        isDone = isDone && (result == 0 || result == -EDOM || result == -EOPNOTSUPP);
    }
    // What the sanitizers' own run time asks for while it reports.
    if (isSanitized)
        isDone = isDone &&
                 allow(filter, {SCMP_SYS(sigaltstack), SCMP_SYS(getpid), SCMP_SYS(gettid), SCMP_SYS(prctl),
                                SCMP_SYS(rt_sigaction), SCMP_SYS(readlink), SCMP_SYS(tgkill), SCMP_SYS(sched_yield),
                                SCMP_SYS(stat), SCMP_SYS(access), SCMP_SYS(pipe), SCMP_SYS(pipe2)});
    isDone = isDone && seccomp_load(filter) == 0;
    seccomp_release(filter);
    return isDone;
}

} // namespace

bool enterSandbox(const SandboxRules &rules)
{
    constexpr int idleClass = 3 << 13; // IOPRIO_CLASS_IDLE
    constexpr int whoProcess = 1;      // IOPRIO_WHO_PROCESS
    ::setpriority(PRIO_PROCESS, 0, rules.isBackground ? niceness : 0);
    if (rules.isBackground)
        ::syscall(SYS_ioprio_set, whoProcess, 0, idleClass);
    if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || ::prctl(PR_SET_DUMPABLE, 0) != 0 ||
        ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return false;
    // Sanitized programs reserve terabytes of addresses.
    if (!isSanitized && !limit(RLIMIT_AS, rules.mostMemory))
        return false;
    return limit(RLIMIT_FSIZE, rules.mostFileBytes) && limit(RLIMIT_NOFILE, 16) && limit(RLIMIT_CORE, 0) &&
           limit(RLIMIT_CPU, mostCpuSeconds) && limit(RLIMIT_NPROC, 0) && filterCalls();
}

} // namespace velmora::media
