#include "netcommon/playbackthread.h"

#include "fetcher.h"
#include "playbackboard.h"
#include "playbackinbox.h"
#include "playbackpipeline.h"
#include "playbackworker.h"

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
    const bool isUsable = initialiseGStreamer();
    QThread network;
    network.setObjectName(QStringLiteral("fetcher"));
    auto *const fetcher = new Fetcher; // its thread's end deletes it, on that thread
    fetcher->moveToThread(&network);
    connect(&network, &QThread::finished, fetcher, &QObject::deleteLater);
    network.start();
    PlaybackWorker(d->inbox, *fetcher, isUsable).run();
    network.quit();
    network.wait();
    d->inbox.clear();
}

} // namespace netcommon
