#pragma once

#include "netcommon/playback.h"
#include "netcommon/playbackthread.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

// Playback and its thread, and what they said, in order.
class PlaybackRig : public QObject {
public:
    // sink: as VELMORA_AUDIO_SINK
    explicit PlaybackRig(const char *sink = "fakesink sync=true");
    ~PlaybackRig() override;

    // As the player screen starts a track: stop, start, address.
    void play(const QByteArray &url);
    void command(PLAYBACK_TYPE_E type) { thread.setType(type); }
    int state() { return playback->getPbcState(); }
    IMTK_PB_CTRL_BUFFER_STATUS_T buffer();
    int count(const QString &what) const { return int(heard.count(what)); }

    netcommon::Playback *const playback;
    netcommon::PlaybackThread thread;
    // "url", "result N", "play", "pause", "total N" (seconds), "eof", "next", "stop"; emptied by play().
    QStringList heard;
    QList<int> seconds; // current times
    QList<int> percents;
    QList<bool> lows;
};

// What the player screen does with the buffer every 500 ms, and with the end of a track.
class WaterlineCaller : public QObject {
public:
    WaterlineCaller(PlaybackRig &rig, QList<QByteArray> urls);

    int started = 0;   // tracks
    bool done = false; // the last one has ended
    int lowTicks = 0;  // in a row
    int pauses = 0;
    int pausedAt = -1; // amount at the last pause and resume, ms
    int resumedAt = -1;

private:
    void startNext();
    void tick();

    PlaybackRig &m_rig;
    QList<QByteArray> m_urls;
    QTimer m_timer;
    bool m_eof = false;
    bool m_next = false;
    quint32 m_total = 0;
};
