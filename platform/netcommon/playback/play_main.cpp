// velmora-play ADDRESS: plays one address through libNetCommon and prints each signal with its time.

#include "netcommon/playback.h"
#include "netcommon/playbackthread.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>

using netcommon::Playback;

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: velmora-play ADDRESS\n");
        return 2;
    }
    QElapsedTimer clock;
    clock.start();
    const auto say = [&clock](const char *what, int a = 0, int b = 0, int c = 0) {
        IMTK_PB_CTRL_BUFFER_STATUS_T buffer{};
        Playback::getInstance()->GetBufferStatus(&buffer);
        std::printf("%8.3f %-12s %d %d %d   state %d, buffered %u..%u ms\n", double(clock.elapsed()) / 1000, what, a, b,
                    c, Playback::getInstance()->getPbcState(), buffer.ui4_start, buffer.ui4_end);
        std::fflush(stdout);
    };
    auto *const playback = Playback::getInstance();
    int result = 0;
    QObject::connect(playback, &Playback::signalPlayURLOK, &app, [&] { say("url"); });
    QObject::connect(playback, &Playback::signalPlayResult, &app, [&](int ret) {
        say("result", ret);
        if (ret < 0) {
            result = 1;
            QCoreApplication::quit();
        }
    });
    QObject::connect(playback, &Playback::signalPlayOk, &app, [&] { say("playing"); });
    QObject::connect(playback, &Playback::signalPauseOk, &app, [&] { say("paused"); });
    QObject::connect(playback, &Playback::signalNotifyTotalTime, &app,
                     [&](int h, int m, int s) { say("total", h, m, s); });
    QObject::connect(playback, &Playback::signalNotifyCurrentTime, &app,
                     [&](int h, int m, int s) { say("time", h, m, s); });
    QObject::connect(playback, &Playback::signalBufferState, &app, [&](bool low) { say("low", low); });
    QObject::connect(playback, &Playback::signalGetFileEOF, &app, [&] { say("received"); });
    QObject::connect(playback, &Playback::signalGotoPlayNextSong, &app, [&] {
        say("end");
        QCoreApplication::quit();
    });
    {
        netcommon::PlaybackThread thread;
        thread.start();
        thread.setType(PLAYBACK_TYPE_START);
        thread.setAudioUrl(argv[1]);
        QCoreApplication::exec();
    }
    delete playback;
    return result;
}
