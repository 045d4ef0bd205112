#include "playbackrig.h"

#include "platform/netcommon/playback/playbackstatistics.h"

using netcommon::Playback;

PlaybackRig::PlaybackRig(const QByteArray &sink)
    : playback(Playback::getInstance())
{
    qputenv("VELMORA_AUDIO_SINK", sink);
    const auto say = [this](const char *text) { return [this, text] { heard << QLatin1String(text); }; };
    connect(playback, &Playback::signalPlayURLOK, this, say("url"));
    connect(playback, &Playback::signalPlayResult, this,
            [this](int ret) { heard << QStringLiteral("result %1").arg(ret); });
    connect(playback, &Playback::signalPlayOk, this, say("play"));
    connect(playback, &Playback::signalPauseOk, this, say("pause"));
    connect(playback, &Playback::signalNotifyTotalTime, this,
            [this](int h, int m, int s) { heard << QStringLiteral("total %1").arg(h * 3600 + m * 60 + s); });
    connect(playback, &Playback::signalGetFileEOF, this, say("eof"));
    connect(playback, &Playback::signalGotoPlayNextSong, this, say("next"));
    connect(playback, &Playback::signalStopOk, this, say("stop"));
    connect(playback, &Playback::signalNotifyCurrentTime, this,
            [this](int h, int m, int s) { seconds << h * 3600 + m * 60 + s; });
    connect(playback, &Playback::signalNotifyProgressValue, this, [this](int percent) { percents << percent; });
    connect(playback, &Playback::signalBufferState, this, [this](bool low) { lows << low; });
    thread.start(QThread::InheritPriority);
}

PlaybackRig::~PlaybackRig()
{
    thread.setType(PLAYBACK_TYPE_END);
    thread.wait();
    delete playback;
}

void PlaybackRig::play(const QByteArray &url)
{
    m_audioBefore = netcommon::statistics::audioSecondsRendered();
    replace(url);
}

void PlaybackRig::replace(const QByteArray &url)
{
    heard.clear();
    seconds.clear();
    percents.clear();
    lows.clear();
    thread.setType(PLAYBACK_TYPE_STOP);
    thread.setType(PLAYBACK_TYPE_START);
    QByteArray text = url;
    thread.setAudioUrl(text.data());
    text.fill('x'); // the caller may change the text after the call
}

void PlaybackRig::play(const MediaFile &file)
{
    server.serve("/track", file);
    play(server.url("/track"));
}

void PlaybackRig::replace(const MediaFile &file)
{
    server.serve("/track", file);
    replace(server.url("/track"));
}

double PlaybackRig::audioSeconds() const
{
    return netcommon::statistics::audioSecondsRendered() - m_audioBefore;
}

QStringList PlaybackRig::wholeStory(int total)
{
    return {"stop", "url", "result 0", "play", QStringLiteral("total %1").arg(total), "eof", "next"};
}

IMTK_PB_CTRL_BUFFER_STATUS_T PlaybackRig::buffer()
{
    IMTK_PB_CTRL_BUFFER_STATUS_T status{};
    playback->GetBufferStatus(&status);
    return status;
}
