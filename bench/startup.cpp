// Wall and CPU time from the start of a program to its painted first screen: the radio's loading screen, started by its
// menu system as on a device, against the bare window. Ten runs each, in turn. The CPU time of the radio's side is that
// of both processes.
#include "device.h"
#include "figures.h"

#include <QCoreApplication>

#include <cstdio>
#include <ctime>

#include <sys/types.h>

namespace {

struct Start {
    double wallMs = 0;        // from before the process exists to the painted window
    double cpuMs = 0;         // of the process that paints
    double applicationMs = 0; // of it until there is an application object
    double parentMs = 0;      // CPU of the process that started it, 0 without one
};

double cpuMsOf(qint64 pid)
{
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(static_cast<pid_t>(pid), &clock) != 0 || clock_gettime(clock, &time) != 0)
        return 0;
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// `startUs`: nowUs() before the program was started. Nothing when it did not paint.
std::optional<Start> untilPainted(Watched &program, qint64 startUs, bool hasParent)
{
    Start start;
    if (const auto application = program.next("application", {}, 20000))
        start.applicationMs = static_cast<double>(application->cpuUs) / 1e3;
    const auto painted = program.next("painted", {}, 20000);
    if (hasParent)
        start.parentMs = cpuMsOf(program.process().processId());
    program.process().kill(); // an orderly exit would take time, and nothing after this is measured
    program.process().waitForFinished();
    if (!painted)
        return std::nullopt;
    start.wallMs = static_cast<double>(painted->atUs - startUs) / 1e3;
    start.cpuMs = static_cast<double>(painted->cpuUs) / 1e3;
    return start;
}

double median(const std::vector<Start> &starts, double Start::*field)
{
    std::vector<double> values;
    for (const Start &start : starts)
        values.push_back(start.*field);
    return figures::median(values);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Device device;
    if (!device.prepare())
        return 1;
    constexpr int runs = 10;
    std::vector<Start> radio, bare;
    for (int run = -1; run < runs; ++run) { // the first pair fills the page cache
        const qint64 bareUs = nowUs();
        Watched window(QStringLiteral(BENCH_BAREWINDOW), {}, device.environment());
        const auto bareStart = untilPainted(window, bareUs, false);
        const qint64 radioUs = nowUs();
        const auto started = device.startRadio("fakesink sync=true", true);
        const auto radioStart = untilPainted(*started, radioUs, true);
        if (!bareStart || !radioStart) {
            std::fprintf(stderr, "a program did not paint: %s\n", started->log().right(2000).constData());
            return 1;
        }
        if (run >= 0) {
            bare.push_back(*bareStart);
            radio.push_back(*radioStart);
        }
    }
    const double bareCpu = median(bare, &Start::cpuMs), bareWall = median(bare, &Start::wallMs);
    const double radioCpu = median(radio, &Start::cpuMs), radioWall = median(radio, &Start::wallMs);
    const double menuCpu = median(radio, &Start::parentMs);
    figures::note("bare window, wall time to painted", bareWall, " ms", "median of ten");
    figures::note("bare window, CPU to painted", bareCpu, " ms", "median of ten");
    figures::note("  of it until there is an application object", median(bare, &Start::applicationMs), " ms");
    figures::note("radio with its menu system, wall time to painted loading screen", radioWall, " ms", "median of ten");
    figures::note("radio, CPU to painted loading screen", radioCpu, " ms", "median of ten");
    figures::note("  of it until there is an application object", median(radio, &Start::applicationMs), " ms",
                  "loader, libraries, Qt's own start");
    figures::note("menu system, CPU until then", menuCpu, " ms");
    figures::print("start, wall time against the bare window", radioWall / bareWall, "", 2.0);
    figures::print("start, CPU time of both processes against the bare window", (radioCpu + menuCpu) / bareCpu, "",
                   1.5);
    return 0;
}
