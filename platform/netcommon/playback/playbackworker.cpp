#include "playbackworker.h"

#include "httpaddress.h"
#include "playbackboard.h"
#include "playbackbuffer.h"

#include "netcommon/playback.h"

#include <QDebug>

namespace netcommon {

namespace {

constexpr int TickMs = 100;
constexpr qint64 StartDeadlineMs = 20000; // without a byte and without a result
constexpr qint64 NoAudioMs = 1500;        // all bytes here and no audio found: a picture, say

constexpr int CannotPlayAddress = -1;
constexpr int CannotPlayAnything = -2;

constexpr char SilentSink[] = "fakesink sync=true";

// VELMORA_AUDIO_SINK describes the sink as gst-launch-1.0 does, for instance "alsasink device=hw:1".
QByteArray chosenSink()
{
    const QByteArray sink = qgetenv("VELMORA_AUDIO_SINK").trimmed();
    return sink.isEmpty() ? QByteArray("autoaudiosink") : sink;
}

void emitReport(Playback *playback, const PlaybackReport &report)
{
    const int value = report.value;
    const int hours = value / 3600, minutes = value / 60 % 60, seconds = value % 60;
    switch (report.kind) {
    case PlaybackReport::UrlOk:
        emit playback->signalPlayURLOK();
        break;
    case PlaybackReport::Result:
        emit playback->signalPlayResult(value);
        break;
    case PlaybackReport::PlayOk:
        emit playback->signalPlayOk();
        break;
    case PlaybackReport::PauseOk:
        emit playback->signalPauseOk();
        break;
    case PlaybackReport::TotalTime:
        emit playback->signalNotifyTotalTime(hours, minutes, seconds);
        break;
    case PlaybackReport::CurrentTime:
        emit playback->signalNotifyCurrentTime(hours, minutes, seconds);
        break;
    case PlaybackReport::Progress:
        emit playback->signalNotifyProgressValue(value);
        break;
    case PlaybackReport::BufferLow:
        emit playback->signalBufferState(value != 0);
        break;
    case PlaybackReport::FileEof:
        emit playback->signalGetFileEOF();
        break;
    case PlaybackReport::NextSong:
        emit playback->signalGotoPlayNextSong();
        break;
    }
}

void sayWhereSoundGoes(const PlaybackPipeline &pipeline)
{
    static std::atomic<bool> said{false};
    if (pipeline.playsIntoNothing() && !said.exchange(true))
        qDebug("PlaybackThread,play,no sound device: playing into nothing, in real time.");
}

} // namespace

PlaybackWorker::PlaybackWorker(PlaybackInbox &inbox, Fetcher &fetcher, bool usable)
    : m_inbox(inbox)
    , m_fetcher(fetcher)
    , m_usable(usable)
{
}

PlaybackWorker::~PlaybackWorker()
{
    tearDown();
}

void PlaybackWorker::run()
{
    QDeadlineTimer nextTick(TickMs);
    while (true) {
        const bool idle = !m_pipeline;
        const auto event = m_inbox.next(idle ? QDeadlineTimer(QDeadlineTimer::Forever) : nextTick);
        if (event) {
            if (event->kind == PlaybackEvent::Command) {
                if (!command(*event))
                    return;
            } else if (event->kind == PlaybackEvent::Address) {
                openAddress(event->text);
            } else if (m_pipeline && event->id == m_pipeline->id()) {
                pipelineEvent(*event);
            }
        }
        if (idle || nextTick.hasExpired()) {
            if (!idle)
                tick();
            nextTick.setRemainingTime(TickMs);
        }
        flush();
    }
}

bool PlaybackWorker::command(const PlaybackEvent &event)
{
    switch (event.value) {
    case PLAYBACK_TYPE_START:
    case PLAYBACK_TYPE_STOP:
        tearDown();
        m_order = PlaybackOrder();
        m_generation = event.id;
        m_armed = event.value == PLAYBACK_TYPE_START;
        publish({});
        if (!m_armed)
            PlaybackBoard::instance().postAlways([](Playback *playback) { emit playback->signalStopOk(); });
        return true;
    case PLAYBACK_TYPE_PAUSE:
    case PLAYBACK_TYPE_RESUME:
        if (m_armed || m_pipeline) {
            m_order.wantPlay(event.value == PLAYBACK_TYPE_RESUME);
            if (m_pipeline)
                applyState();
        }
        return true;
    case PLAYBACK_TYPE_END:
        tearDown();
        m_generation = event.id;
        m_order = PlaybackOrder();
        publish({});
        return false;
    default:
        qDebug("PlaybackThread,setType,unknown type=%d.", event.value);
        return true;
    }
}

void PlaybackWorker::openAddress(const QByteArray &text)
{
    if (!m_armed) {
        qDebug("PlaybackThread,setAudioUrl,not armed.");
        return;
    }
    m_armed = false;
    m_order.taken();
    m_address = httpaddress::parse(text);
    if (!m_address.isValid()) {
        fail(CannotPlayAddress, "neither http nor https");
        return;
    }
    if (!m_usable) {
        fail(CannotPlayAnything, "no GStreamer");
        return;
    }
    m_fallback = false;
    build(chosenSink(), 0);
}

void PlaybackWorker::build(const QByteArray &sink, qint64 startAtMs)
{
    m_held = false;
    m_lengthMs = -1;
    m_bodyComplete.reset();
    m_pipeline = std::make_unique<PlaybackPipeline>(PlaybackPipeline::Setup{++m_lastPipelineId, sink, startAtMs},
                                                    m_inbox, m_fetcher);
    if (!m_pipeline->missing().isEmpty()) {
        fail(CannotPlayAnything, "missing " + m_pipeline->missing());
        return;
    }
    m_fetcher.start(m_address, m_pipeline->feed());
    if (!m_pipeline->preroll())
        sinkFailed("refused to start");
}

void PlaybackWorker::tearDown()
{
    if (!m_pipeline)
        return;
    m_fetcher.stop();
    m_pipeline.reset();
}

void PlaybackWorker::pipelineEvent(const PlaybackEvent &event)
{
    switch (event.kind) {
    case PlaybackEvent::Prerolled:
        prerolled();
        break;
    case PlaybackEvent::Ended:
        ended();
        break;
    case PlaybackEvent::SinkFailed:
        sinkFailed(event.text);
        break;
    case PlaybackEvent::DecoderMissing:
        fail(CannotPlayAnything, "no decoder for " + event.text);
        break;
    case PlaybackEvent::ContentFailed:
        fail(CannotPlayAddress, event.text);
        break;
    case PlaybackEvent::BodyFailed:
        fail(CannotPlayAddress, "cannot be fetched");
        break;
    case PlaybackEvent::BodyComplete:
        m_bodyComplete.emplace();
        m_bodyComplete->start();
        break;
    case PlaybackEvent::Command:
    case PlaybackEvent::Address:
        break;
    }
}

void PlaybackWorker::prerolled()
{
    if (m_order.starting()) {
        if (!m_pipeline->reachedSink()) { // the stream ended without a sample
            fail(CannotPlayAddress, "no audio in it");
            return;
        }
        sayWhereSoundGoes(*m_pipeline);
        m_order.prerolled();
    }
    tick();
    applyState();
}

void PlaybackWorker::ended()
{
    if (!m_order.playing()) {
        fail(CannotPlayAddress, "ended before it began");
        return;
    }
    m_order.totalKnown(static_cast<int>(m_pipeline->endMs() / 1000));
    m_order.ended();
    publish(bufferStatusAtEnd(m_order.total())); // before the signal: who hears it may ask at once
    flush();
    tearDown();
}

// A device that is gone: go on in silence where we were, so that the radio at least keeps moving. The compressed data
// is lost with the pipeline and is fetched again.
void PlaybackWorker::sinkFailed(const QByteArray &why)
{
    if (m_fallback) {
        fail(CannotPlayAnything, "sink: " + why);
        return;
    }
    m_fallback = true;
    qDebug("PlaybackThread,play,sink failed (%s), going on without sound.", why.constData());
    const qint64 position = m_order.playing() ? m_buffer.ui4_start : 0;
    tearDown();
    build(SilentSink, position);
}

void PlaybackWorker::fail(int code, const QByteArray &why)
{
    qDebug("PlaybackThread,play,result=%d,%s.", code, why.constData());
    m_order.failed(code);
    publish({});
    flush();
    tearDown();
}

void PlaybackWorker::tick()
{
    if (!m_pipeline)
        return;
    if (m_order.starting()) {
        if (m_pipeline->feed()->silentMs() > StartDeadlineMs)
            fail(CannotPlayAddress, "nothing heard of it in time");
        else if (m_bodyComplete && m_bodyComplete->hasExpired(NoAudioMs) && !m_pipeline->hasAudio())
            fail(CannotPlayAddress, "no audio in it");
        return;
    }
    const bool received = m_pipeline->received();
    if (m_lengthMs < 0)
        m_lengthMs = m_pipeline->lengthMs();
    const IMTK_PB_CTRL_BUFFER_STATUS_T buffer =
        bufferStatus({m_pipeline->positionMs(), m_pipeline->endMs(), m_lengthMs, received});
    publish(buffer);
    if (m_lengthMs >= 0 || received)
        m_order.totalKnown(static_cast<int>((m_lengthMs >= 0 ? m_lengthMs : m_pipeline->endMs()) / 1000));
    if (received)
        m_order.received();
    m_order.buffered(static_cast<int>(buffer.ui4_amount));
    m_order.position(static_cast<int>(buffer.ui4_start / 1000));
    const bool hold = mustHold(m_held, buffer.ui4_amount, received);
    if (hold != m_held) {
        m_held = hold;
        applyState();
    }
}

void PlaybackWorker::applyState()
{
    if (!m_order.playing())
        return;
    m_pipeline->setPlaying(m_order.wantsPlay() && !m_held);
    publish(m_buffer);
}

void PlaybackWorker::publish(const IMTK_PB_CTRL_BUFFER_STATUS_T &buffer)
{
    m_buffer = buffer;
    PlaybackBoard::instance().publish(m_generation, m_order.state(), buffer);
}

void PlaybackWorker::flush()
{
    for (const PlaybackReport &report : m_order.take())
        PlaybackBoard::instance().post(m_generation, [report](Playback *playback) { emitReport(playback, report); });
}

} // namespace netcommon
