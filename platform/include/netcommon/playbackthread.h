#pragma once

#include "netcommon/netcommon_global.h"

#include <QThread>

namespace netcommon {

// Plays audio. Both commands return at once and may be called from any thread; what comes of them is reported by
// Playback. Owned by whoever creates it, who tells it PLAYBACK_TYPE_END and waits before deleting it.
// VELMORA_AUDIO_SINK in the environment chooses the sink, as gst-launch-1.0 describes it ("alsasink device=hw:1");
// without it, or empty, the best device that works is used, and none at all is replaced by silence in real time.
class NETCOMMON_EXPORT PlaybackThread : public QThread {
    Q_OBJECT
public:
    explicit PlaybackThread(QObject *parent = nullptr);
    ~PlaybackThread() override;

    void setType(_PLAYBACK_TYPE_E type);
    // http and https only. The text is copied. Ignored unless PLAYBACK_TYPE_START was set before.
    void setAudioUrl(char *url);

protected:
    void run() override;

private:
    struct Private;
    Private *d;
};

} // namespace netcommon
