#include "app/crashreporter.h"

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <execinfo.h>
#include <sys/prctl.h>
#include <ucontext.h>
#include <unistd.h>

#if defined(__arm__)
#include "app/registerdump_arm.h"
namespace registers = registerdump_arm;
#elif defined(__aarch64__)
#include "app/registerdump_aarch64.h"
namespace registers = registerdump_aarch64;
#elif defined(__x86_64__)
#include "app/registerdump_x86_64.h"
namespace registers = registerdump_x86_64;
#else
#error "the crash reporter has no register dump for this processor"
#endif

// The signal handler calls printf: the process ends here anyway, and the console is the only record. Most lines appear
// twice (deliberate).
namespace {

// In the order of installation. SIGSEGV is last; only it gets SA_ONSTACK.
const int handledSignals[] = {SIGINT, SIGILL, SIGTERM, SIGFPE, SIGABRT, SIGSEGV};
constexpr int signalCount = sizeof handledSignals / sizeof handledSignals[0];
struct sigaction previousActions[signalCount];

constexpr int maxFrames = 32;
constexpr const char *defaultHandler =
    "Using default signal handler."; // printed although none is restored (deliberate)

void banner(const char *text)
{
    std::printf("\n%s\n\n", text);
}

void bannerTwice(const char *text)
{
    banner(text);
    banner(text);
}

void defaultHandlerTwice()
{
    std::puts(defaultHandler);
    std::puts(defaultHandler);
}

[[noreturn]] void park()
{
    std::fflush(stdout); // a file or a pipe is buffered
    for (;;)
        pause();
}

void restorePrevious(int signo)
{
    std::fflush(stdout);
    for (int i = 0; i < signalCount; ++i) {
        if (handledSignals[i] == signo)
            sigaction(signo, &previousActions[i], nullptr);
    }
}

void printRegisters(const mcontext_t &context)
{
    char name[20];
    std::memset(name, 0, sizeof name);
    prctl(PR_GET_NAME, name);
    std::printf("\n");
    std::printf("Pid: %d, comm: %20s\n", getpid(), name);
    registers::print(context);
}

// A separate function, so that the first frame is this one and never one of the interrupted code.
[[gnu::noinline]] void printBacktrace()
{
    void *frames[maxFrames];
    const int count = backtrace(frames, maxFrames);
    char **names = backtrace_symbols(frames, count);
    if (!names)
        return;
    std::puts("backtrace:");
    for (int i = 1; i < count; ++i) // the first frame is this function
        std::puts(names[i]);
    std::free(names);
}

void printInstruction(void *pc)
{
    std::uint32_t word = 0;
    std::memcpy(&word, pc, sizeof word);
    for (int i = 0; i < 2; ++i)
        std::printf("\tpc: %p, inst: 0x%08lx\n", pc, static_cast<unsigned long>(word));
}

void handleSignal(int signo, siginfo_t *info, void *context)
{
    const mcontext_t &machine = static_cast<ucontext_t *>(context)->uc_mcontext;
    void *const pc = registers::pc(machine);
    switch (signo) {
    case SIGINT:
        bannerTwice("Interrupt from keyboard");
        defaultHandlerTwice();
        restorePrevious(signo);
        return;
    case SIGTERM:
        bannerTwice("Termination signal");
        defaultHandlerTwice();
        restorePrevious(signo);
        return;
    case SIGILL:
        bannerTwice("Illegal Instruction");
        printInstruction(pc);
        printRegisters(machine);
        printBacktrace();
        defaultHandlerTwice();
        break;
    case SIGFPE:
        bannerTwice("Floating point exception");
        printInstruction(pc);
        printRegisters(machine);
        printBacktrace();
        std::puts(defaultHandler);
        break;
    case SIGSEGV:
        bannerTwice("Invalid memory reference");
        for (int i = 0; i < 2; ++i)
            std::printf("\tpc: %p, addr: %p\n", pc, info->si_addr);
        printRegisters(machine);
        defaultHandlerTwice();
        break;
    case SIGABRT:
        bannerTwice("Abort signal");
        printRegisters(machine);
        printBacktrace();
        break;
    default:
        for (int i = 0; i < 2; ++i)
            std::printf("\n%s: %d\n\n", "Unexpected signal", signo);
        banner("Unexpected signal");
        break;
    }
    park();
}

} // namespace

int installCrashReporter()
{
    struct sigaction action;
    std::memset(&action, 0, sizeof action);
    action.sa_sigaction = handleSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_SIGINFO;
    for (int i = 0; i < signalCount; ++i) {
        if (handledSignals[i] == SIGSEGV)
            action.sa_flags |= SA_ONSTACK;
        const int result = sigaction(handledSignals[i], &action, &previousActions[i]);
        if (result != 0)
            return result;
    }
    return 0;
}
