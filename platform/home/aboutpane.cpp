#include "aboutpane.h"

#include <QDateTime>
#include <QFile>
#include <QSaveFile>
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

} // namespace

AboutPane::AboutPane(const QDBusConnection &bus, const platform::DeviceSettingsWatch *settings, QObject *parent)
    : Pane(tr("About"), {}, parent)
    , m_settings(settings)
    , m_stick(bus, this)
{
    connect(&m_stick, &UsbStick::ready, this, [this](const QString &folder) { saveTo(QDir(folder)); });
    connect(&m_stick, &UsbStick::failed, this, [this](const QString &words) {
        m_isSaving = false;
        setText(words);
    });
    connect(&m_stick, &UsbStick::released, this, [this](bool isOut) {
        m_isSaving = false;
        setText(isOut ? m_result + QStringLiteral(". ") + tr("The stick can be taken out.") : m_result);
    });
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
    if (m_isSaving)
        return;
    m_isSaving = true;
    setText(tr("Saving the report..."));
    m_stick.find();
}

void AboutPane::saveTo(const QDir &folder)
{
    QString reason;
    const QString path = writeReport(folder, &reason);
    m_result = path.isEmpty() ? tr("The report cannot be saved. %1").arg(reason)
                              : tr("The report is saved: %1").arg(QFileInfo(path).fileName());
    m_stick.release();
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
