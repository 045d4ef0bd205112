// velmora-monkey: random keys and random faults on the playing radio, one seed after another, each in a process of its
// own. Started by tools/monkey and, with one seed and fewer keys, by ./test.

#include "faults/monkey.h"
#include "faults/rig.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    // Freed memory is held back by the sanitizer; with less of it, growth is the radio's own.
    qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":quarantine_size_mb=8");
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"first", "the first seed (1)", "SEED", "1"},
                       {"seeds", "so many seeds (1)", "N", "1"},
                       {"keys", "keys of a seed (5000)", "N", "5000"},
                       {"rate", "keys a second, at most (50)", "N", "50"}});
    parser.addHelpOption();
    parser.process(application);
    if (!faults::makeMusic()) {
        std::fputs("monkey: the music cannot be made\n", stderr);
        return 2;
    }
    std::puts("| Seed | Keys | Seconds | Starts | Slowest answer | Memory, MB | Descriptors | Threads | Verdict |\n"
              "|---|---|---|---|---|---|---|---|---|");
    int failures = 0;
    const unsigned first = parser.value("first").toUInt();
    for (unsigned seed = first; seed < first + parser.value("seeds").toUInt(); ++seed) {
        const faults::Storm storm{seed, parser.value("keys").toInt(), parser.value("rate").toInt()};
        const faults::Survival survival = faults::survive(storm);
        std::printf(
            "| %u | %d | %.0f | %d | %d ms | %lld, %lld | %d, %d | %d, %d | %s |\n", seed, storm.keys, survival.seconds,
            survival.starts, survival.worstAnswerMs, survival.before.memoryKb / 1024, survival.after.memoryKb / 1024,
            survival.before.descriptors, survival.after.descriptors, survival.before.threads, survival.after.threads,
            qPrintable(survival.problem.isEmpty() ? QStringLiteral("survived") : survival.problem.section('\n', 0, 0)));
        std::fflush(stdout);
        if (!survival.problem.isEmpty()) {
            ++failures;
            std::fprintf(stderr, "--- seed %u: %s\n", seed, qPrintable(survival.problem));
        }
    }
    return failures > 0 ? 1 : 0;
}
