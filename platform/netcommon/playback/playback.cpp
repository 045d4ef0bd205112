#include "netcommon/playback.h"

#include "playbackboard.h"

namespace netcommon {

// The one instance; GUI thread. The contract gives no owner: getInstance() makes it, and the end of main deletes it.
class PlaybackPrivate {
public:
    static Playback *instance;
};

Playback *PlaybackPrivate::instance = nullptr;

Playback *Playback::getInstance()
{
    if (!PlaybackPrivate::instance)
        PlaybackPrivate::instance = new Playback;
    return PlaybackPrivate::instance;
}

Playback::Playback()
    : d(nullptr)
{
    PlaybackBoard::instance().setReceiver(this);
}

Playback::~Playback()
{
    PlaybackBoard::instance().setReceiver(nullptr);
    PlaybackPrivate::instance = nullptr;
    delete d;
}

int Playback::getPbcState()
{
    return PlaybackBoard::instance().state();
}

int Playback::GetBufferStatus(IMTK_PB_CTRL_BUFFER_STATUS_T *status)
{
    if (!status)
        return -1;
    *status = PlaybackBoard::instance().buffer();
    return 0;
}

} // namespace netcommon
