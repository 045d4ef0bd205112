#pragma once

#include "netcommon/netcommon_global.h"

#include <QThread>

#include <memory>

namespace netcommon {

// Plays audio. Both commands return at once and may be called from any thread; Playback reports their results. The
// creator owns the object, sends PLAYBACK_TYPE_END and waits for the thread before deleting it: two seconds at most,
// then a sink that does not answer is left to the end of the process. VELMORA_AUDIO_SINK in the environment chooses the
// sink, as gst-launch-1.0 describes it ("alsasink device=hw:1"); if it is unset or empty, the best working device is
// used, or silence in real time if there is none.
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
    std::shared_ptr<Private> d;
};

} // namespace netcommon
