#pragma once

#include "mediaserver.h"

#include "netcommon/playback.h"
#include "netcommon/playbackthread.h"

#include <QObject>
#include <QStringList>

// Waits for an outcome that takes the playing time of a track on any machine.
#define TRY_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, 60000)
#define TRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, 60000)

// Playback and its thread, their reports in order, and a media server.
class PlaybackRig : public QObject {
public:
    // sink: as VELMORA_AUDIO_SINK
    explicit PlaybackRig(const QByteArray &sink = "fakesink sync=true");
    ~PlaybackRig() override;

    // As the player screen starts a track: stop, start, address.
    void play(const QByteArray &url);
    void play(const MediaFile &file); // served as "/track"
    // The same, and audioSeconds() goes on counting.
    void replace(const QByteArray &url);
    void replace(const MediaFile &file);
    void command(PLAYBACK_TYPE_E type) { thread.setType(type); }
    int state() { return playback->getPbcState(); }
    IMTK_PB_CTRL_BUFFER_STATUS_T buffer();
    int count(const QString &what) const { return int(heard.count(what)); }
    // The next track was asked for, and the last sample was heard.
    bool hasEnded() { return heard.contains(QStringLiteral("next")) && state() == PLAYBACK_STATE_STOPPED; }
    // Seconds of audio that have reached the sink since play().
    double audioSeconds() const;
    // The full sequence of reports about a good track of this many seconds.
    static QStringList wholeStory(int total);

    MediaServer server;
    netcommon::Playback *const playback;
    netcommon::PlaybackThread thread;
    // "url", "result N", "play", "pause", "total N" (seconds), "eof", "next", "stop"; emptied by play().
    QStringList heard;
    QList<int> seconds; // current times
    QList<int> percents;
    QList<bool> lows;

private:
    double m_audioBefore = 0;
};
