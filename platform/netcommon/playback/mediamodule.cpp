#include "mediamodule.h"

#include "fetcher.h"
#include "playbackboard.h"
#include "playbackinbox.h"
#include "playbackpipeline.h"
#include "playbackworker.h"

#include <QThread>

namespace netcommon {

namespace {

void play(PlaybackInbox &inbox, PlaybackBoard &board)
{
    PlaybackBoard::use(board);
    const bool isUsable = initialiseGStreamer();
    QThread network;
    network.setObjectName(QStringLiteral("fetcher"));
    auto *const fetcher = new Fetcher; // its thread's end deletes it, on that thread
    fetcher->moveToThread(&network);
    QObject::connect(&network, &QThread::finished, fetcher, &QObject::deleteLater);
    network.start();
    PlaybackWorker(inbox, *fetcher, isUsable).run();
    network.quit();
    network.wait();
}

constexpr MediaModule module{play, makePictureDownload};

} // namespace

} // namespace netcommon

const netcommon::MediaModule *netcommonMediaModule()
{
    return &netcommon::module;
}
