// Proportional set size on the player screen while a track plays, against the bare window's; and which of the sound
// system's plug-ins are loaded. Ten readings each, a second apart.
#include "device.h"
#include "figures.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <QThread>

#include <algorithm>
#include <cstdio>

namespace {

double medianSetMb(qint64 pid)
{
    std::vector<double> values;
    for (int i = 0; i < 10; ++i) {
        values.push_back(proportionalSetMb(pid));
        QThread::msleep(1000);
    }
    return figures::median(values);
}

QStringList loadedPlugins(qint64 pid)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(pid));
    QSet<QString> names;
    if (maps.open(QIODevice::ReadOnly))
        for (const QByteArray &line : maps.readAll().split('\n'))
            if (line.contains("/gstreamer-1.0/"))
                names.insert(QString::fromUtf8(line.mid(line.lastIndexOf('/') + 1)));
    QStringList sorted(names.begin(), names.end());
    sorted.sort();
    return sorted;
}

// "name 1.2 MB" of the mappings that weigh most.
std::string heaviestMappings(qint64 pid)
{
    QFile maps(QStringLiteral("/proc/%1/smaps").arg(pid));
    QMap<QByteArray, double> megabytes;
    QByteArray name;
    if (maps.open(QIODevice::ReadOnly))
        for (const QByteArray &line : maps.readAll().split('\n')) {
            const QList<QByteArray> words = line.simplified().split(' ');
            if (words.first().contains('-') && words.size() >= 5)
                name = words.size() > 5 ? words.at(5).mid(words.at(5).lastIndexOf('/') + 1) : QByteArray("anonymous");
            else if (words.first() == "Pss:")
                megabytes[name] += words.at(1).toDouble() / 1024;
        }
    QList<QByteArray> names = megabytes.keys();
    std::sort(names.begin(), names.end(), [&](auto &a, auto &b) { return megabytes[a] > megabytes[b]; });
    QStringList heaviest;
    for (const QByteArray &each : names.mid(0, 10))
        heaviest += QStringLiteral("%1 %2")
                        .arg(QString::fromUtf8(each).remove(QLatin1Char('[')).remove(QLatin1Char(']')))
                        .arg(megabytes[each], 0, 'f', 1);
    return heaviest.join(QStringLiteral(", ")).toStdString();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Device device;
    if (!device.prepare())
        return 1;
    double bareMb = 0;
    {
        Watched window(QStringLiteral(BENCH_BAREWINDOW), {}, device.environment());
        if (!window.next("painted", {}, 20000))
            return 1;
        bareMb = medianSetMb(window.pid());
        figures::note("bare window, heaviest mappings, MB", heaviestMappings(window.pid()));
    }
    const auto menu = device.startRadio("fakesink sync=true", true);
    QByteArray status;
    for (int tries = 0; tries < 100; ++tries) {
        status = device.status();
        if (QJsonDocument::fromJson(status).object().value(QStringLiteral("audioSeconds")).toDouble() > 5)
            break;
        QThread::msleep(200);
    }
    const qint64 pid = Device::radioPid(status);
    const double radioMb = medianSetMb(pid);
    const double played =
        QJsonDocument::fromJson(device.status()).object().value(QStringLiteral("audioSeconds")).toDouble();
    if (pid == 0 || played < 10) {
        std::fprintf(stderr, "nothing plays: %s\n", status.constData());
        return 1;
    }
    figures::note("bare window, proportional set", bareMb, " MB");
    figures::note("radio while playing, proportional set", radioMb, " MB");
    figures::print("memory against the bare window", radioMb / bareMb, "", 2.2);
    figures::note("radio, heaviest mappings, MB", heaviestMappings(pid));
    figures::note("sound plug-ins loaded", loadedPlugins(pid).join(QLatin1Char(' ')).toStdString());
    return 0;
}
