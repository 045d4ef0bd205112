#include "keyclick.h"

#include <QtEndian>

#include <cmath>

namespace netcommon {

QByteArray KeyClick::samples()
{
    constexpr int rate = 48'000;
    constexpr int count = rate / 80;
    constexpr double loudness = 4000;
    constexpr double tone = 1800; // Hz
    QByteArray bytes(count * 2, '\0');
    for (int i = 0; i < count; ++i) {
        const double fading = std::exp(-8.0 * i / count);
        const double sample = loudness * fading * std::sin(2 * M_PI * tone * i / rate);
        qToLittleEndian<qint16>(qint16(sample), bytes.data() + qsizetype(i) * 2);
    }
    return bytes;
}

void KeyClick::play()
{
    if (m_player.state() != QProcess::NotRunning)
        return;
    m_player.setStandardOutputFile(QProcess::nullDevice());
    m_player.setStandardErrorFile(QProcess::nullDevice());
    m_player.start(QStringLiteral("aplay"),
                   {QStringLiteral("-q"), QStringLiteral("-t"), QStringLiteral("raw"), QStringLiteral("-f"),
                    QStringLiteral("S16_LE"), QStringLiteral("-r"), QStringLiteral("48000"), QStringLiteral("-")});
    m_player.write(samples());
    m_player.closeWriteChannel();
}

} // namespace netcommon
