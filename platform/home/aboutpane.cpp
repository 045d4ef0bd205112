#include "aboutpane.h"

#include <QDateTime>
#include <QFile>
#include <QSaveFile>
#include <QStorageInfo>
#include <QSysInfo>

namespace home {

namespace {

constexpr qint64 maxReportBytes = 4 * 1024 * 1024;
constexpr int listed = 3;

struct Licence {
    const char *program;
    const char *licence;
};
// The texts lie in /usr/share/doc on Debian.
constexpr Licence licences[] = {
    {"Qt", "LGPL 3"},          {"GStreamer", "LGPL 2.1"},       {"curl", "curl"},
    {"OpenSSL", "Apache 2.0"}, {"Liberation fonts", "OFL 1.1"}, {"Noto fonts", "OFL 1.1"},
};

QDir reportFolder()
{
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(state))
        state = QDir::homePath() + QStringLiteral("/.local/state");
    return QDir(state + QStringLiteral("/velmora/reports"));
}

// Where sticks are mounted.
QStringList sticks()
{
    QStringList found;
    for (const QStorageInfo &volume : QStorageInfo::mountedVolumes()) {
        const QString place = volume.rootPath();
        const bool isForSticks = place.startsWith(QLatin1String("/media/")) ||
                                 place.startsWith(QLatin1String("/run/media/")) ||
                                 place.startsWith(QLatin1String("/mnt/"));
        if (isForSticks && volume.isValid() && volume.isReady() && !volume.isReadOnly())
            found += place;
    }
    return found;
}

} // namespace

AboutPane::AboutPane(const platform::DeviceSettingsWatch *settings, QObject *parent)
    : Pane(tr("About"), {}, parent)
    , m_settings(settings)
{
}

QStringList AboutPane::reports()
{
    return reportFolder().entryList(QDir::Files, QDir::Time);
}

void AboutPane::open()
{
    const QStringList all = reports();
    setText(all.isEmpty() ? tr("Nothing has gone wrong.")
                          : tr("Things that went wrong: %1. A report helps to find out why.").arg(all.size()));
    QList<PaneRow> rows = {{tr("Save a report to a USB stick"), {}, false, [this] { save(); }}};
    for (const QString &name : all.mid(0, listed))
        rows += PaneRow{tr("Report"), name};
    rows += {tr("Velmora"), QStringLiteral(VELMORA_VERSION)};
    rows += {tr("System"), QSysInfo::prettyProductName()};
    for (const Licence &used : licences)
        rows += {QLatin1String(used.program), QLatin1String(used.licence)};
    setRows(rows);
}

void AboutPane::save()
{
    const QStringList places = sticks();
    if (places.isEmpty())
        return setText(tr("There is no USB stick that can be written to. Put one in and choose this again."));
    QString reason;
    const QString path = writeReport(QDir(places.first()), &reason);
    setText(path.isEmpty() ? tr("The report cannot be saved. %1").arg(reason)
                           : tr("The report is saved: %1").arg(QFileInfo(path).fileName()));
}

QString AboutPane::writeReport(const QDir &folder, QString *reason) const
{
    const QDateTime now = QDateTime::currentDateTime();
    QSaveFile file(folder.filePath(
        QStringLiteral("velmora-report-%1.txt").arg(now.toString(QStringLiteral("yyyy-MM-dd-HHmmss")))));
    if (!file.open(QIODevice::WriteOnly)) {
        *reason = file.errorString();
        return {};
    }
    QByteArray text = "Velmora " VELMORA_VERSION "\n" + now.toString(Qt::ISODate).toUtf8() + "\nQt " + qVersion() +
                      "\n" + QSysInfo::prettyProductName().toUtf8() + ", " +
                      QSysInfo::currentCpuArchitecture().toUtf8() + "\n\n";
    for (const auto &setting : platform::DeviceSettings::table())
        text += QByteArray(setting.key) + " = " +
                platform::DeviceSettings::toText(m_settings->settings().value(setting.key)).toUtf8() + "\n";
    bool isWhole = file.write(text) == text.size();
    for (const QString &name : reports()) {
        QFile report(reportFolder().filePath(name));
        const QByteArray head = "\n==== " + name.toUtf8() + "\n";
        isWhole = isWhole && file.write(head) == head.size();
        if (report.open(QIODevice::ReadOnly)) {
            const QByteArray content = report.read(maxReportBytes);
            isWhole = isWhole && file.write(content) == content.size();
        }
    }
    if (!isWhole || !file.commit()) {
        *reason = tr("There is not enough room, or the stick is damaged.");
        return {};
    }
    return file.fileName();
}

} // namespace home
