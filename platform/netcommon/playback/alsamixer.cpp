#include "alsamixer.h"

#include <QProcess>

namespace netcommon {

namespace {

constexpr int longestMs = 500;

enum class Answer { Done, Refused, None };

Answer amixer(const QString &mixer, const char *control, const QString &value)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(QStringLiteral("amixer"), {QStringLiteral("-M"), QStringLiteral("-D"), mixer, QStringLiteral("sset"),
                                             QLatin1String(control), value});
    if (!process.waitForFinished(longestMs)) // it hangs, or is not installed
        return Answer::None;
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0 ? Answer::Done : Answer::Refused;
}

} // namespace

QString mixerOf(const QString &device)
{
    const qsizetype colon = device.indexOf(u':');
    if (colon < 0)
        return device;
    QString card = device.mid(colon + 1).section(u',', 0, 0);
    if (card.startsWith(QLatin1String("CARD=")))
        card.remove(0, 5);
    return QStringLiteral("hw:") + card;
}

bool setMixerVolume(const QString &device, int percent)
{
    const QString mixer = mixerOf(device);
    const QString value = QStringLiteral("%1%").arg(percent);
    // What a listener means by "volume", by its usual names.
    for (const char *const control : {"Master", "PCM", "Digital"}) {
        switch (amixer(mixer, control, value)) {
        case Answer::Done:
            amixer(mixer, control, QStringLiteral("unmute")); // some have no switch
            return true;
        case Answer::Refused:
            break;
        case Answer::None:
            return false;
        }
    }
    return false;
}

} // namespace netcommon
