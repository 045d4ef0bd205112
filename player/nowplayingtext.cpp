#include "player/nowplayingtext.h"

namespace nowplayingtext {

QString time(int hours, int mins, int secs)
{
    const QString minutes =
        QStringLiteral("%1:%2").arg(mins, 2, 10, QLatin1Char('0')).arg(secs, 2, 10, QLatin1Char('0'));
    return hours != 0 ? QStringLiteral("%1:%2").arg(hours).arg(minutes) : minutes;
}

} // namespace nowplayingtext
