#include "playbackworker.h"

#include "httpaddress.h"
#include "playbackboard.h"
#include "playbackbuffer.h"

#include "netcommon/playback.h"

#include <QDebug>

#include <algorithm>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace netcommon {

namespace {

constexpr int usualTickMs = 100;
constexpr int startingTickMs = 10; // while a track only waits for its buffer
constexpr int sinkStaysOpenMs = 3000;
constexpr int endingSlackMs = 2000;       // beyond what is left of an ending track
constexpr unsigned urgentBelowMs = 10000; // a connection that hangs now would soon be heard
constexpr qint64 startDeadlineMs = 20000; // without a byte and without a result
constexpr qint64 noAudioMs = 1500;        // all bytes here and no audio found: a picture, say
constexpr quint32 settledMs = 4000;       // of a track: its pictures are shown, and what made them is freed

constexpr qint64 longestSinkLookMs = 30000;

constexpr int cannotPlayAddress = -1;
constexpr int cannotPlayAnything = -2;

constexpr char silentSink[] = "fakesink sync=true";
constexpr char bestSink[] = "autoaudiosink";

// VELMORA_AUDIO_SINK describes the sink as gst-launch-1.0 does, for instance "alsasink device=hw:1".
QByteArray chosenSink()
{
    const QByteArray sink = qgetenv("VELMORA_AUDIO_SINK").trimmed();
    return sink.isEmpty() ? QByteArray(bestSink) : sink;
}

void emitReport(Playback *playback, const PlaybackReport &report)
{
    const int value = report.value;
    const int hours = value / 3600, minutes = value / 60 % 60, seconds = value % 60;
    switch (report.kind) {
    case PlaybackReport::Kind::UrlOk:
        emit playback->signalPlayURLOK();
        break;
    case PlaybackReport::Kind::Result:
        emit playback->signalPlayResult(value);
        break;
    case PlaybackReport::Kind::PlayOk:
        emit playback->signalPlayOk();
        break;
    case PlaybackReport::Kind::PauseOk:
        emit playback->signalPauseOk();
        break;
    case PlaybackReport::Kind::TotalTime:
        emit playback->signalNotifyTotalTime(hours, minutes, seconds);
        break;
    case PlaybackReport::Kind::CurrentTime:
        emit playback->signalNotifyCurrentTime(hours, minutes, seconds);
        break;
    case PlaybackReport::Kind::Progress:
        emit playback->signalNotifyProgressValue(value);
        break;
    case PlaybackReport::Kind::BufferLow:
        emit playback->signalBufferState(value != 0);
        break;
    case PlaybackReport::Kind::FileEof:
        emit playback->signalGetFileEOF();
        break;
    case PlaybackReport::Kind::NextSong:
        emit playback->signalGotoPlayNextSong();
        break;
    }
}

// The heap keeps what pictures and earlier tracks have freed, unless it lies at the heap's end.
void giveFreeMemoryBack()
{
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

void sayWhereSoundGoes(GstElement *sink)
{
    static std::atomic<bool> isSaid{false};
    if (isSilent(sink) && !isSaid.exchange(true))
        qDebug("PlaybackThread,play,no sound device: playing into nothing, in real time.");
}

} // namespace

PlaybackWorker::PlaybackWorker(PlaybackInbox &inbox, Fetcher &fetcher, bool isUsable)
    : m_inbox(inbox)
    , m_fetcher(fetcher)
    , m_isUsable(isUsable)
{
}

PlaybackWorker::~PlaybackWorker()
{
    dropAll();
}

void PlaybackWorker::run()
{
    QDeadlineTimer nextTick(usualTickMs);
    while (true) {
        const bool wasIdle = isIdle();
        const auto event = m_inbox.next(wasIdle ? QDeadlineTimer(QDeadlineTimer::Forever) : nextTick);
        if (event) {
            if (event->kind == PlaybackEvent::Kind::Command) {
                if (!command(*event))
                    return;
            } else if (event->kind == PlaybackEvent::Kind::Address) {
                openAddress(event->text);
            } else if (m_endingTrack && event->id == m_endingTrack->id()) {
                if (event->kind == PlaybackEvent::Kind::Ended || event->kind == PlaybackEvent::Kind::SinkFailed ||
                    event->kind == PlaybackEvent::Kind::ContentFailed)
                    trackHasEnded();
            } else if (m_pipeline && event->id == m_pipeline->id()) {
                pipelineEvent(*event);
            }
        }
        if (wasIdle || nextTick.hasExpired() || nextTick.remainingTime() > tickMs()) {
            if (!wasIdle)
                tick();
            nextTick.setRemainingTime(tickMs());
        }
        flush();
    }
}

bool PlaybackWorker::command(const PlaybackEvent &event)
{
    switch (event.value) {
    case PLAYBACK_TYPE_START:
    case PLAYBACK_TYPE_STOP:
        replaceTrack();
        m_order = PlaybackOrder();
        m_generation = event.id;
        m_isArmed = event.value == PLAYBACK_TYPE_START;
        publish({});
        if (!m_isArmed)
            PlaybackBoard::instance().postAlways([](Playback *playback) { emit playback->signalStopOk(); });
        return true;
    case PLAYBACK_TYPE_PAUSE:
    case PLAYBACK_TYPE_RESUME:
        if (m_isArmed || m_pipeline) {
            m_order.wantPlay(event.value == PLAYBACK_TYPE_RESUME);
            applyState();
        }
        return true;
    case PLAYBACK_TYPE_END:
        dropAll();
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
    if (!m_isArmed) {
        qDebug("PlaybackThread,setAudioUrl,not armed.");
        return;
    }
    m_isArmed = false;
    m_order.taken();
    m_address = httpaddress::parse(text);
    if (!m_address.isValid()) {
        fail(cannotPlayAddress, "neither http nor https");
        return;
    }
    if (!m_isUsable) {
        fail(cannotPlayAnything, "no GStreamer");
        return;
    }
    m_hasSilentSink = false;
    m_sinkLookMs = firstSinkLookMs;
    if (m_endingTrack) {
        build(nullptr, 0);
    } else if (PlaybackSink sink = openSink()) {
        build(std::move(sink), 0);
    }
}

// The sink that is open already, or a new one. Null: there is none, and the track has failed.
PlaybackSink PlaybackWorker::openSink()
{
    m_isSinkReused = m_sink != nullptr;
    if (m_isSinkReused)
        return std::move(m_sink);
    m_mayKeepSink = !m_hasSilentSink;
    m_sinkVolume = {};
    m_sinkDescription = m_hasSilentSink ? QByteArray(silentSink) : chosenSink();
    QByteArray problem;
    PlaybackSink sink = makePlaybackSink(m_sinkDescription, &problem);
    if (!sink)
        fail(cannotPlayAnything, "missing " + problem);
    return sink;
}

void PlaybackWorker::build(PlaybackSink sink, qint64 startAtMs)
{
    m_isHeld = false;
    m_isPrerolled = m_canStart = false;
    m_lengthMs = -1;
    m_bodyComplete.reset();
    m_hasGivenMemoryBack = false;
    const PlaybackSound &sound = PlaybackBoard::instance().sound();
    m_pipeline = std::make_unique<PlaybackPipeline>(
        PlaybackPipeline::Setup{++m_lastPipelineId, startAtMs, sound.isLevelled}, m_inbox, m_fetcher);
    if (!m_pipeline->missing().isEmpty()) {
        fail(cannotPlayAnything, "missing " + m_pipeline->missing());
        return;
    }
    m_isSilent = sound.isNextSilent;
    m_fetcher.start(m_address, m_pipeline->feed());
    m_sinkVolume.streamBegins();
    const bool isAttached = !sink || m_pipeline->attachSink(std::move(sink));
    applySound();
    if (!isAttached || !m_pipeline->preroll())
        sinkFailed("refused to start");
}

// What is left of a track that has asked for the next one plays to its end, unless it is paused.
void PlaybackWorker::replaceTrack()
{
    if (m_endingTrack && !m_order.wantsPlay())
        keepSink(*std::exchange(m_endingTrack, nullptr));
    if (!m_pipeline || !m_order.isPlaying() || !m_order.hasAskedForNext() || !m_order.wantsPlay() ||
        !m_pipeline->hasSink()) {
        tearDown();
        return;
    }
    m_fetcher.stop();
    m_endingTrack = std::move(m_pipeline);
    m_endingIsOver.setRemainingTime(nextTrackLeadMs + endingSlackMs);
}

void PlaybackWorker::tearDown()
{
    if (!m_pipeline)
        return;
    m_fetcher.stop();
    keepSink(*m_pipeline);
    m_pipeline.reset();
}

void PlaybackWorker::dropAll()
{
    tearDown();
    m_endingTrack.reset();
    m_sink.reset();
}

// For the next track. A replacement for the best sink is not kept: a device may be there by then.
void PlaybackWorker::keepSink(PlaybackPipeline &pipeline)
{
    PlaybackSink sink = pipeline.takeSink();
    if (!sink || !m_mayKeepSink || (m_sinkDescription == bestSink && isSilent(sink.get())))
        return;
    m_sink = std::move(sink);
    m_sinkCloses.setRemainingTime(sinkStaysOpenMs);
}

// The ending track was heard to its last sample, or cannot be: its sink goes to the next one, if that waits for it.
void PlaybackWorker::trackHasEnded()
{
    const std::unique_ptr<PlaybackPipeline> ended = std::move(m_endingTrack); // destroyed when the next one plays
    keepSink(*ended);
    if (!m_pipeline || m_pipeline->hasSink())
        return;
    PlaybackSink sink = openSink();
    if (!sink)
        return;
    if (!m_pipeline->attachSink(std::move(sink)))
        sinkFailed("refused to start");
    else
        applyState();
}

void PlaybackWorker::pipelineEvent(const PlaybackEvent &event)
{
    switch (event.kind) {
    case PlaybackEvent::Kind::Decoded:
    case PlaybackEvent::Kind::Prerolled:
        m_isPrerolled = m_pipeline->hasSink() && m_pipeline->hasDecoded();
        m_sinkVolume.streamBegins();
        applySound();
        if (m_order.isStarting())
            startIfReady();
        else
            applyState();
        break;
    case PlaybackEvent::Kind::Ended:
        ended();
        break;
    case PlaybackEvent::Kind::SinkFailed:
        sinkFailed(event.text);
        break;
    case PlaybackEvent::Kind::DecoderMissing:
        fail(cannotPlayAnything, "no decoder for " + event.text);
        break;
    case PlaybackEvent::Kind::ContentFailed:
        fail(cannotPlayAddress, event.text);
        break;
    case PlaybackEvent::Kind::BodyFailed:
        fail(cannotPlayAddress, "cannot be fetched");
        break;
    case PlaybackEvent::Kind::BodyComplete:
        m_bodyComplete.emplace();
        m_bodyComplete->start();
        break;
    case PlaybackEvent::Kind::Command:
    case PlaybackEvent::Kind::Address:
        break;
    }
}

// Decoded audio is there (or waits for the ending track to leave its sink): it begins as soon as enough is buffered.
void PlaybackWorker::startIfReady()
{
    if (m_pipeline->isEmpty()) {
        fail(cannotPlayAddress, "no audio in it");
        return;
    }
    m_canStart = m_pipeline->hasDecoded() && (m_endingTrack || m_isPrerolled);
    if (!m_canStart || !mayStart({m_pipeline->endMs(), m_pipeline->feed()->arrivingMs(), m_pipeline->isReceived()}))
        return;
    m_order.ready();
    applySound();
    tickPlaying();
    applyState();
}

void PlaybackWorker::ended()
{
    if (!m_order.isPlaying()) {
        fail(cannotPlayAddress, "ended before it began");
        return;
    }
    m_order.totalKnown(static_cast<int>(m_pipeline->endMs() / 1000));
    m_order.ended();
    publish(bufferStatusAtEnd(m_order.total())); // before the signal: who hears it may ask at once
    flush();
    tearDown();
}

// A device that was open and is gone: it is opened anew. One that cannot be opened is replaced by silence, so that the
// radio at least moves on. The compressed data is lost with the pipeline and is fetched again.
void PlaybackWorker::sinkFailed(const QByteArray &why)
{
    if (m_hasSilentSink) {
        fail(cannotPlayAnything, "sink: " + why);
        return;
    }
    m_hasSilentSink = !m_isSinkReused;
    qDebug("PlaybackThread,play,sink failed (%s), %s.", why.constData(),
           m_hasSilentSink ? "going on without sound" : "opening it anew");
    m_nextSinkLook.setRemainingTime(m_sinkLookMs);
    m_sinkLookMs = std::min(2 * m_sinkLookMs, longestSinkLookMs);
    const qint64 position = m_order.isPlaying() ? m_buffer.ui4_start : 0;
    m_fetcher.stop();
    m_pipeline.reset();
    if (PlaybackSink sink = openSink())
        build(std::move(sink), position);
}

// A sound server that was restarted: the track goes on with sound where it is.
void PlaybackWorker::lookForSink()
{
    m_nextSinkLook.setRemainingTime(m_sinkLookMs);
    QByteArray problem;
    PlaybackSink sink = makePlaybackSink(chosenSink(), &problem);
    if (!sink || gst_element_set_state(sink.get(), GST_STATE_READY) != GST_STATE_CHANGE_SUCCESS || isSilent(sink.get()))
        return;
    qDebug("PlaybackThread,play,the sink is back.");
    const qint64 position = m_buffer.ui4_start;
    m_fetcher.stop();
    m_pipeline.reset();
    m_hasSilentSink = false;
    m_isSinkReused = false;
    m_mayKeepSink = true;
    m_sinkVolume = {};
    m_sinkDescription = chosenSink();
    build(std::move(sink), position);
}

void PlaybackWorker::fail(int code, const QByteArray &why)
{
    qDebug("PlaybackThread,play,result=%d,%s.", code, why.constData());
    m_order.failed(code);
    publish({});
    flush();
    tearDown();
}

int PlaybackWorker::tickMs() const
{
    return m_canStart && m_order.isStarting() ? startingTickMs : usualTickMs;
}

void PlaybackWorker::tick()
{
    applySound();
    if (m_endingTrack && m_order.wantsPlay() && m_endingIsOver.hasExpired())
        trackHasEnded();
    if (m_sink && m_sinkCloses.hasExpired())
        m_sink.reset();
    if (m_pipeline && m_order.isStarting())
        tickStarting();
    else if (m_pipeline)
        tickPlaying();
    if (m_pipeline && m_hasSilentSink && m_order.isPlaying() && m_nextSinkLook.hasExpired())
        lookForSink();
}

void PlaybackWorker::tickStarting()
{
    if (m_pipeline->feed()->silentMs() > startDeadlineMs)
        fail(cannotPlayAddress, "nothing heard of it in time");
    else if (m_bodyComplete && m_bodyComplete->hasExpired(noAudioMs) && !m_pipeline->hasAudio())
        fail(cannotPlayAddress, "no audio in it");
    else
        startIfReady();
}

void PlaybackWorker::tickPlaying()
{
    const bool isReceived = m_pipeline->isReceived();
    if (m_lengthMs < 0)
        m_lengthMs = m_pipeline->lengthMs();
    const IMTK_PB_CTRL_BUFFER_STATUS_T buffer =
        bufferStatus({m_pipeline->positionMs(), m_pipeline->endMs(), m_lengthMs, isReceived});
    publish(buffer);
    m_pipeline->feed()->setUrgent(buffer.ui4_amount < urgentBelowMs);
    if (m_lengthMs >= 0 || isReceived)
        m_order.totalKnown(static_cast<int>((m_lengthMs >= 0 ? m_lengthMs : m_pipeline->endMs()) / 1000));
    if (isReceived)
        m_order.received();
    m_order.buffered(static_cast<int>(buffer.ui4_amount));
    m_order.position(static_cast<int>(buffer.ui4_start / 1000));
    if (isReceived && m_pipeline->hasSink() && m_order.wantsPlay() && buffer.ui4_amount <= nextTrackLeadMs)
        m_order.endsSoon();
    if (!m_hasGivenMemoryBack && buffer.ui4_start >= settledMs) {
        m_hasGivenMemoryBack = true;
        giveFreeMemoryBack();
    }
    const bool isHeld = mustHold(m_isHeld, buffer.ui4_amount, isReceived);
    if (isHeld != m_isHeld) {
        m_isHeld = isHeld;
        applyState();
    }
}

// The sink is the ending track's as long as there is one.
void PlaybackWorker::applySound()
{
    const PlaybackSound &sound = PlaybackBoard::instance().sound();
    PlaybackPipeline *const heard = m_endingTrack ? m_endingTrack.get() : m_pipeline.get();
    m_sinkVolume.want(sound.volume, sound.isMuted);
    if (sound.isVolumeChosen && heard && heard->hasSink())
        m_sinkVolume.apply(heard->sink());
    const double factor = m_sinkVolume.factor() * sound.fade;
    if (m_endingTrack)
        m_endingTrack->gain().setFactor(factor);
    if (m_pipeline)
        m_pipeline->gain().setFactor(m_isSilent && sound.isNextSilent ? 0 : factor);
}

void PlaybackWorker::applyState()
{
    if (m_endingTrack) {
        m_endingTrack->setPlaying(m_order.wantsPlay());
        m_endingIsOver.setRemainingTime(nextTrackLeadMs + endingSlackMs);
    }
    if (!m_pipeline || !m_order.isPlaying())
        return;
    if (m_pipeline->hasSink()) {
        sayWhereSoundGoes(m_pipeline->sink());
        m_pipeline->setPlaying(m_order.wantsPlay() && !m_isHeld);
    }
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
