#pragma once

#include "nowplaying.h"

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

namespace netcommon {

// The idle picture: cover, title, artist and the time of day on black, at two fifths of the brightness. It stands on
// one side of the canvas for forty-five seconds, drifts a little meanwhile, and then appears on the other side: what
// was lit is dark for the next forty-five seconds.
struct SaverScene {
    QPixmap cover; // as large as it is drawn, or null
    QString title;
    QString artist;
    QString clock;
    QString sleep; // how long the sleep timer still runs; empty: it does not
};
// `elapsedMs`: since the picture began. The canvas is 1280 x 720.
void paintSaver(QPainter &painter, const SaverScene &scene, qint64 elapsedMs);

// Lies over the playing screen, takes no focus and goes with it. It repaints once a second. GUI thread.
class SaverPicture : public QWidget {
    Q_OBJECT
public:
    explicit SaverPicture(QWidget *playingScreen);

    void showBlack();
    // elapsedMs: since the picture began.
    void showTrack(const NowPlaying &track, const QString &sleep, qint64 elapsedMs);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_isBlack = true;
    NowPlaying m_track;
    SaverScene m_scene;
    qint64 m_elapsedMs = 0;
};

} // namespace netcommon
