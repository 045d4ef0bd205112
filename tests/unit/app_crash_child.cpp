// Installs the crash reporter, reports that, and crashes in the way that its argument names. Used by
// app_crash_test.cpp.
#include "app/crashreporter.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sys/prctl.h>
#include <unistd.h>

// Bypasses the checks of the sanitizers, so that the processor raises the signal.
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
        raise(SIGFPE); // these processors do not trap a division by zero
#endif
    else if (!std::strcmp(deed, "abort"))
        abort();
    for (;;)
        pause();
}
