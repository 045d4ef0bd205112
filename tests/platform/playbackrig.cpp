#include "playbackrig.h"

using netcommon::Playback;

PlaybackRig::PlaybackRig(const char *sink)
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
    heard.clear();
    seconds.clear();
    percents.clear();
    lows.clear();
    thread.setType(PLAYBACK_TYPE_STOP);
    thread.setType(PLAYBACK_TYPE_START);
    QByteArray text = url;
    thread.setAudioUrl(text.data());
    text.fill('x'); // the text is the caller's again
}

IMTK_PB_CTRL_BUFFER_STATUS_T PlaybackRig::buffer()
{
    IMTK_PB_CTRL_BUFFER_STATUS_T status{};
    playback->GetBufferStatus(&status);
    return status;
}

WaterlineCaller::WaterlineCaller(PlaybackRig &rig, QList<QByteArray> urls)
    : m_rig(rig)
    , m_urls(std::move(urls))
{
    connect(rig.playback, &Playback::signalGetFileEOF, this, [this] { m_eof = true; });
    connect(rig.playback, &Playback::signalGotoPlayNextSong, this, [this] { m_next = true; });
    connect(rig.playback, &Playback::signalNotifyTotalTime, this,
            [this](int h, int m, int s) { m_total = quint32(h * 3600 + m * 60 + s); });
    connect(rig.playback, &Playback::signalPlayResult, this, [this](int ret) {
        if (ret == 0) {
            m_total = 0;
            m_timer.start(500);
        } else {
            startNext();
        }
    });
    connect(&m_timer, &QTimer::timeout, this, [this] { tick(); });
    startNext();
}

void WaterlineCaller::startNext()
{
    m_timer.stop();
    m_eof = m_next = false;
    lowTicks = 0;
    if (m_urls.isEmpty()) {
        done = true;
        return;
    }
    ++started;
    m_rig.play(m_urls.takeFirst());
}

void WaterlineCaller::tick()
{
    if (m_next && m_eof) {
        startNext();
        return;
    }
    m_next = false;
    const auto buffer = m_rig.buffer();
    if (m_eof) {
        if (buffer.ui4_amount == 0 && buffer.ui4_start == buffer.ui4_end && buffer.ui4_start == m_total * 1000)
            m_next = true;
        else if (m_rig.state() == PLAYBACK_STATE_PAUSED)
            m_rig.command(PLAYBACK_TYPE_RESUME);
        return;
    }
    if (buffer.ui4_amount < 3000) {
        ++lowTicks;
        if (m_rig.state() == PLAYBACK_STATE_PLAYING) {
            ++pauses;
            pausedAt = int(buffer.ui4_amount);
            m_rig.command(PLAYBACK_TYPE_PAUSE);
        }
        return;
    }
    lowTicks = 0;
    if (buffer.ui4_amount > 7000 && m_rig.state() != PLAYBACK_STATE_PLAYING) {
        resumedAt = int(buffer.ui4_amount);
        m_rig.command(PLAYBACK_TYPE_RESUME);
    }
}
