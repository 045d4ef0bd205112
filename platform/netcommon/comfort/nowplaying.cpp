#include "nowplaying.h"

#include "platform/netcommon/playback/playbackstatistics.h"
#include "platform/shared/windowstack.h"

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

QWidget *playingScreen()
{
    for (QWidget *window : platform::WindowStack::instance().bottomToTop())
        if (isPlayingScreen(window))
            return window;
    return nullptr;
}

NowPlaying nowPlaying(const QWidget *screen)
{
    NowPlaying now{textOf(screen, titleLabel), textOf(screen, "artistLabel"), textOf(screen, "albumLabel"),
                   textOf(screen, "stationNameLabel"), statistics::coverFile()};
    if (now.title.isEmpty())
        return now;
    const auto *const history = screen->findChild<QListWidget *>(QLatin1String(historyList));
    if (history && history->count() > 0)
        now.title = history->item(0)->text();
    return now;
}

} // namespace netcommon
