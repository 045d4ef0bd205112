/* Preloaded into the tests of another processor, which run under qemu's user-mode emulation. It makes two things work
 * there that work on a device: starting programs of that processor, which become arguments of the emulator, and Qt's
 * QProcess (qemu 7.2 refuses to make a process with a descriptor, but says that it could). For 64 bits also access(),
 * with which Qt looks for its plugins: there qemu 7.2 does not look into the emulated system. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <elf.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

extern char **environ;

enum { mostArguments = 200 };

typedef int (*Execve)(const char *, char *const[], char *const[]);

#if defined(__arm__)
static const Elf32_Half ownMachine = EM_ARM;
#else
static const Elf32_Half ownMachine = EM_AARCH64;
#endif

/* True for a program of the emulated processor: the field lies at the same place in both classes of ELF. Looks at the
 * file that execve() will start. The emulator's own open() prefers one of the same name in the emulated system. */
static int isOwn(const char *path)
{
    static const char host[] = "/proc/self/root";
    char real[4096];
    Elf32_Ehdr header;
    if (strlen(path) + sizeof host > sizeof real)
        return 0;
    strcpy(real, path[0] == '/' ? host : "");
    strcat(real, path);
    const int file = open(real, O_RDONLY | O_CLOEXEC);
    const ssize_t got = file < 0 ? -1 : read(file, &header, sizeof header);
    if (file >= 0)
        close(file);
    return got == (ssize_t)sizeof header && memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
           header.e_machine == ownMachine;
}

/* VELMORA_EMULATOR: the emulator and its options, separated by "|". */
int execve(const char *path, char *const arguments[], char *const environment[])
{
    static char words[4096];
    char *all[mostArguments];
    char *variables[4 * mostArguments];
    size_t count = 0;
    size_t kept = 0;
    const Execve real = (Execve)dlsym(RTLD_NEXT, "execve");
    for (char *const *each = environment; each && *each && kept + 1 < 4 * mostArguments; ++each)
        if (strncmp(*each, "LD_PRELOAD=", 11) != 0) /* the emulator itself cannot load this; it sets it again */
            variables[kept++] = *each;
    variables[kept] = NULL;
    const char *emulator = getenv("VELMORA_EMULATOR");
    if (!emulator || strlen(emulator) >= sizeof words || !isOwn(path))
        return real(path, arguments, variables);
    strcpy(words, emulator);
    char *rest = NULL;
    for (char *word = strtok_r(words, "|", &rest); word && count + 4 < mostArguments; word = strtok_r(NULL, "|", &rest))
        all[count++] = word;
    all[count++] = (char *)"-0";
    all[count++] = arguments[0];
    all[count++] = (char *)path;
    for (size_t index = 1; arguments[index]; ++index) {
        if (count + 1 >= mostArguments) {
            errno = E2BIG;
            return -1;
        }
        all[count++] = arguments[index];
    }
    all[count] = NULL;
    return real(all[0], all, variables);
}

int execv(const char *path, char *const arguments[])
{
    return execve(path, arguments, environ);
}

long syscall(long number, ...)
{
    static long (*real)(long, ...);
    long values[6];
    va_list list;
    va_start(list, number);
    for (int index = 0; index < 6; ++index)
        values[index] = va_arg(list, long);
    va_end(list);
    if (number == SYS_waitid && values[0] == 3 /* P_PIDFD: Qt asks whether there are such descriptors */) {
        errno = EINVAL;
        return -1;
    }
    if (!real)
        real = (long (*)(long, ...))dlsym(RTLD_NEXT, "syscall");
    return real(number, values[0], values[1], values[2], values[3], values[4], values[5]);
}

#if defined(__aarch64__)
typedef int (*Access)(const char *, int);

/* The folder of the emulated system is the word after "-L" in VELMORA_EMULATOR. */
int access(const char *path, int mode)
{
    static Access real;
    char inside[4096];
    const char *emulator = getenv("VELMORA_EMULATOR");
    const char *folder = emulator ? strstr(emulator, "|-L|") : NULL;
    if (!real)
        real = (Access)dlsym(RTLD_NEXT, "access");
    if (folder && path[0] == '/') {
        folder += 4;
        const size_t length = strcspn(folder, "|");
        if (length + strlen(path) < sizeof inside) {
            memcpy(inside, folder, length);
            strcpy(inside + length, path);
            if (real(inside, mode) == 0)
                return 0;
        }
    }
    return real(path, mode);
}
#endif
