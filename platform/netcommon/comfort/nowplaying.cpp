#include "nowplaying.h"

#include "platform/netcommon/playback/playbackstatistics.h"

#include <QLabel>
#include <QListWidget>

namespace netcommon {

namespace {

constexpr char titleLabel[] = "songLabel";
constexpr char historyList[] = "playListWidget"; // its first row is the whole title, which the label may cut

QString textOf(const QWidget *window, const char *name)
{
    const auto *const label = window->findChild<QLabel *>(QLatin1String(name));
    return label ? label->text() : QString();
}

} // namespace

bool isPlayingScreen(const QWidget *window)
{
    return window && window->findChild<QLabel *>(QLatin1String(titleLabel)) &&
           window->findChild<QListWidget *>(QLatin1String(historyList));
}

NowPlaying nowPlaying(const QWidget *playingScreen)
{
    NowPlaying now{textOf(playingScreen, titleLabel), textOf(playingScreen, "artistLabel"),
                   textOf(playingScreen, "albumLabel"), textOf(playingScreen, "stationNameLabel"),
                   statistics::coverFile()};
    if (now.title.isEmpty())
        return now;
    const auto *const history = playingScreen->findChild<QListWidget *>(QLatin1String(historyList));
    if (history && history->count() > 0)
        now.title = history->item(0)->text();
    return now;
}

} // namespace netcommon
