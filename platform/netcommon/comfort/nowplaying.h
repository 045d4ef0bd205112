#pragma once

#include <QString>

class QWidget;

namespace netcommon {

// What the playing screen shows of the current track. It is read from the screen's labels by their object names, which
// are fixed, as `velmora-menu status` does: the screen itself does nothing for it.
struct NowPlaying {
    QString title;
    QString artist;
    QString album;
    QString station;
    QString coverFile; // the picture that was downloaded last; empty: none
    bool operator==(const NowPlaying &) const = default;
};

// A window with the playing screen's labels. GUI thread.
bool isPlayingScreen(const QWidget *window);
// Also where a dialog covers it; null: none is open. GUI thread.
QWidget *playingScreen();
// GUI thread.
NowPlaying nowPlaying(const QWidget *screen);

} // namespace netcommon
