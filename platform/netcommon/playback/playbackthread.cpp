#include "netcommon/playbackthread.h"

#include "mediamodule.h"
#include "playbackboard.h"
#include "playbackinbox.h"

namespace netcommon {

struct Q_DECL_HIDDEN PlaybackThread::Private {
    PlaybackInbox inbox;
};

PlaybackThread::PlaybackThread(QObject *parent)
    : QThread(parent)
    , d(new Private)
{
    setObjectName(QStringLiteral("playback"));
}

PlaybackThread::~PlaybackThread()
{
    if (isRunning()) {
        setType(PLAYBACK_TYPE_END);
        wait();
    }
    delete d;
}

void PlaybackThread::setType(_PLAYBACK_TYPE_E type)
{
    d->inbox.pushMade([type] {
        const bool opens = type == PLAYBACK_TYPE_START || type == PLAYBACK_TYPE_STOP || type == PLAYBACK_TYPE_END;
        return PlaybackEvent{PlaybackEvent::Kind::Command, opens ? PlaybackBoard::instance().newGeneration() : 0, type};
    });
}

void PlaybackThread::setAudioUrl(char *url)
{
    d->inbox.push({PlaybackEvent::Kind::Address, 0, 0, QByteArray(url)}); // null reads as an address that is refused
}

void PlaybackThread::run()
{
    mediaModule().play(d->inbox, PlaybackBoard::instance());
    d->inbox.clear();
}

} // namespace netcommon
