// CPU share of the whole radio, in percent of one core, over 30 s while a track plays and no key is pressed.
#include "device.h"
#include "figures.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QThread>

#include <cstdio>

namespace {

double audioSeconds(Device &device)
{
    return QJsonDocument::fromJson(device.status()).object().value(QStringLiteral("audioSeconds")).toDouble();
}

// CPU seconds by thread name.
QMap<QString, double> byThread(qint64 pid)
{
    QMap<QString, double> times;
    const QString tasks = QStringLiteral("/proc/%1/task").arg(pid);
    for (const QString &task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile name(tasks + QLatin1Char('/') + task + QStringLiteral("/comm"));
        if (name.open(QIODevice::ReadOnly))
            times[QString::fromUtf8(name.readAll().trimmed())] += threadCpuSeconds(pid, task.toLongLong());
    }
    return times;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Device device;
    if (!device.prepare())
        return 1;
    const auto menu = device.startRadio("fakesink sync=true", true);
    for (int tries = 0; tries < 200 && audioSeconds(device) < 8; ++tries)
        QThread::msleep(100);
    const qint64 pid = Device::radioPid(device.status());
    const double playedBefore = audioSeconds(device);
    const QMap<QString, double> threadsBefore = byThread(pid);
    const double before = cpuSeconds(pid);
    constexpr int seconds = 30;
    QThread::sleep(seconds);
    const double share = (cpuSeconds(pid) - before) / seconds * 100;
    const QMap<QString, double> threadsAfter = byThread(pid);
    const double played = audioSeconds(device) - playedBefore;
    if (pid == 0 || played < seconds - 2) {
        std::fprintf(stderr, "the music did not play on: %.1f s\n", played);
        return 1;
    }
    figures::print("CPU share while a track plays", share, " %", 1.0);
    for (auto thread = threadsAfter.begin(); thread != threadsAfter.end(); ++thread) {
        const double own = (thread.value() - threadsBefore.value(thread.key())) / seconds * 100;
        if (own > 0)
            figures::note("  of it thread " +
                              QString(thread.key()).replace(QLatin1Char(':'), QLatin1Char(' ')).toStdString(),
                          own, " %");
    }
    return 0;
}
