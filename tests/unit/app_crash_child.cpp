// Installs the crash reporter, says so, and does to itself what its argument names. Judged by app_crash_test.cpp.
#include "app/crashreporter.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sys/prctl.h>
#include <unistd.h>

// Past the sanitizers' own checks: the processor is to notice.
__attribute__((no_sanitize("address", "undefined", "thread"), noinline)) static void writeToNull()
{
    int *volatile nowhere = nullptr;
    *static_cast<volatile int *>(nowhere) = 1;
}

int main(int argc, char **argv)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    prctl(PR_SET_NAME, "crashchild");
    const char *deed = argc > 1 ? argv[1] : "";
    std::printf("installed %d\n", installCrashReporter());
    std::fflush(stdout);

    if (!std::strcmp(deed, "null"))
        writeToNull();
    else if (!std::strcmp(deed, "illegal"))
#if defined(__x86_64__)
        asm volatile("ud2");
#elif defined(__aarch64__)
        asm volatile("udf #0");
#else
        raise(SIGILL);
#endif
    else if (!std::strcmp(deed, "division"))
#if defined(__x86_64__)
        asm volatile("xorl %%edx, %%edx\n\txorl %%eax, %%eax\n\txorl %%ecx, %%ecx\n\tdivl %%ecx" ::
                         : "eax", "ecx", "edx", "cc");
#else
        raise(SIGFPE); // these processors divide by zero without a word
#endif
    else if (!std::strcmp(deed, "abort"))
        abort();
    for (;;)
        pause();
}
