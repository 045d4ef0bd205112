#pragma once

#include "sleepdecider.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace netcommon {

struct PlaybackSound;

// Runs the sleep timer. The end of its time is kept in a file beside the menu system's socket, so that it goes on when
// Home and the radio follow one another. GUI thread.
class SleepTimer : public QObject {
    Q_OBJECT
public:
    // sound: what the playback thread obeys; lives longer. file: empty: nothing is kept; what another start of the
    // machine has kept there is removed.
    SleepTimer(PlaybackSound &sound, const QString &file, QObject *parent);

    void start(int minutes);
    void afterTrack();
    void off();
    // "off", "track", or the minutes that are left, begun ones counted.
    QString text() const;
    // The same for the idle picture: empty when it is off.
    QString shortText() const;
    bool isOn() const { return m_decider.mode() != SleepDecider::Mode::Off; }

signals:
    void pauseWanted(); // the remote's pause key is to be pressed
    void asleep();      // the music is paused

private:
    void run();
    void trackEnds();
    void trackBegins();
    void step();
    void keep(qint64 endMs) const;
    void restore();

    PlaybackSound &m_sound;
    const QString m_file;
    SleepDecider m_decider;
    QTimer m_tick;
};

} // namespace netcommon
