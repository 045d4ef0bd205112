// CPU time from the start of the process to the painted first screen: the radio's loading screen against the bare
// window. Ten runs each, turn about; the radio runs without a menu system, as the bare window does.
#include "device.h"
#include "figures.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

// CPU milliseconds; below 0: it did not paint.
double cpuToPaintedMs(Watched &program, std::vector<double> *toApplication)
{
    if (const auto application = program.next("application", {}, 20000))
        toApplication->push_back(static_cast<double>(application->cpuUs) / 1000);
    const auto painted = program.next("painted", {}, 20000);
    program.process().kill(); // nothing that follows is measured, and an orderly end takes its time
    program.process().waitForFinished();
    return painted ? static_cast<double>(painted->cpuUs) / 1000 : -1;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Device device;
    if (!device.prepare())
        return 1;
    constexpr int runs = 10;
    std::vector<double> radio, bare, radioApplication, bareApplication;
    for (int run = -1; run < runs; ++run) { // the first pair fills the page cache
        Watched window(QStringLiteral(BENCH_BAREWINDOW), {}, device.environment());
        const double bareMs = cpuToPaintedMs(window, &bareApplication);
        const auto started = device.startRadio("fakesink sync=true", false);
        const double radioMs = cpuToPaintedMs(*started, &radioApplication);
        if (bareMs < 0 || radioMs < 0) {
            std::fprintf(stderr, "a program did not paint: %s\n", started->log().right(2000).constData());
            return 1;
        }
        if (run >= 0) {
            bare.push_back(bareMs);
            radio.push_back(radioMs);
        }
    }
    figures::note("bare window, CPU to painted", figures::median(bare), " ms", "median of ten");
    figures::note("  of it until there is an application object", figures::median(bareApplication), " ms");
    figures::note("radio, CPU to painted loading screen", figures::median(radio), " ms", "median of ten");
    figures::note("  of it until there is an application object", figures::median(radioApplication), " ms",
                  "loader, libraries, Qt's own start");
    figures::print("start, CPU time against the bare window", figures::median(radio) / figures::median(bare), "", 1.5);
    return 0;
}
