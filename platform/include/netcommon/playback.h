#pragma once

#include "netcommon/netcommon_global.h"

#include <QObject>

namespace netcommon {

// What the playback thread reports. One instance per process; it lives in the GUI thread, which alone emits its
// signals. For one address the order is: signalPlayURLOK, signalPlayResult, then (result >= 0) signalPlayOk and
// signalNotifyTotalTime, later signalGetFileEOF, and last signalGotoPlayNextSong, shortly before the last sample.
// After a command that replaces a track nothing is reported about that track. The rest of its sound is still heard if
// signalGotoPlayNextSong has been emitted for it.
class NETCOMMON_EXPORT Playback : public QObject {
    Q_OBJECT
public:
    static Playback *getInstance();
    ~Playback() override;

    // 4 stopped, 5 playing, 6 paused (PLAYBACK_STATE_E). Any thread.
    int getPbcState();
    // Copies the last published snapshot, at most 100 ms old; 0 on success. Any thread.
    int GetBufferStatus(IMTK_PB_CTRL_BUFFER_STATUS_T *status);

signals:
    void signalNotifyProgressValue(int percent); // 0 to 100
    void signalNotifyTotalTime(int hours, int mins, int secs);
    void signalNotifyCurrentTime(int hours, int mins, int secs);
    void signalGotoPlayNextSong(); // the track ends in less than a second, or has ended: time to start the next one
    void signalGetFileEOF();       // the whole file was received
    void signalStopOk();
    void signalPlayResult(int ret); // 0 plays, and enough is buffered to go on; -1 this address cannot be played; -2
                                    // nothing can be played
    void signalPauseOk();
    void signalPlayOk();
    void signalPlayURLOK(); // the address was taken
    void signalBufferState(bool isLow);

private:
    Playback();
    friend class PlaybackPrivate;
    class PlaybackPrivate *d;
};

} // namespace netcommon
