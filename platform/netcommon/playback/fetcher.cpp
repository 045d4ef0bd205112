#include "fetcher.h"

#include "httpaddress.h"

#include <QDebug>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <utility>

namespace netcommon {

namespace {
constexpr qint64 readAhead = 256 * 1024; // Qt buffers this much; beyond it TCP slows the server down
constexpr int askAttempts = 2;           // whether a file of unknown length goes on
constexpr int idleChecks = 8;            // within the shortest limit
constexpr qint64 chunkSize = 128 * 1024; // of larger chunks fewer frames are split, which would then be copied
} // namespace

Fetcher::Fetcher(const FetchLimits &limits, QObject *parent)
    : QObject(parent)
    , m_limits(limits)
    , m_network(new QNetworkAccessManager(this))
    , m_idle(this)
    , m_retry(this)
{
    m_network->setAutoDeleteReplies(false);
    connect(&m_idle, &QTimer::timeout, this, &Fetcher::checkIdle);
    m_retry.setSingleShot(true);
    connect(&m_retry, &QTimer::timeout, this, [this] {
        m_network->clearConnectionCache(); // Qt would send the request over the connection that hangs
        open(m_address);
    });
}

Fetcher::~Fetcher()
{
    close();
}

void Fetcher::start(const QUrl &address, std::shared_ptr<FetchSink> sink)
{
    QMetaObject::invokeMethod(
        this, [this, address, sink = std::move(sink)] { begin(address, sink); }, Qt::QueuedConnection);
}

void Fetcher::stop()
{
    QMetaObject::invokeMethod(
        this, [this] { begin({}, nullptr); }, Qt::QueuedConnection);
}

void Fetcher::wake()
{
    QMetaObject::invokeMethod(
        this, [this] { pump(); }, Qt::QueuedConnection);
}

void Fetcher::begin(const QUrl &address, const std::shared_ptr<FetchSink> &sink)
{
    close();
    m_sink = sink;
    m_address = address;
    m_progress = {};
    m_askedAt = -1;
    m_acceptsRanges = false;
    m_attempts = m_hangs = 0;
    if (m_sink) {
        m_started.start();
        m_redirects = 0;
        open(m_address);
    }
}

void Fetcher::open(const QUrl &address)
{
    close();
    QNetworkRequest request = httpaddress::request(address);
    if (m_progress.delivered > 0) {
        request.setRawHeader("Range", "bytes=" + QByteArray::number(m_progress.delivered) + '-');
        if (!m_progress.etag.isEmpty())
            request.setRawHeader("If-Range", m_progress.etag);
    }
    m_isConnected = m_isJudged = m_isFinished = false;
    m_reply = m_network->get(request);
    m_reply->setReadBufferSize(readAhead);
    connect(m_reply, &QNetworkReply::requestSent, this, [this] { m_isConnected = true; });
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &Fetcher::headArrived);
    connect(m_reply, &QNetworkReply::readyRead, this, &Fetcher::pump);
    connect(m_reply, &QNetworkReply::finished, this, &Fetcher::replyFinished);
    watchIdle(true);
}

void Fetcher::close()
{
    m_idle.stop();
    m_retry.stop();
    if (auto *const reply = std::exchange(m_reply, nullptr))
        httpaddress::drop(reply, this);
}

// Reads the header once it is complete. Also called at the end of a reply that announced none.
void Fetcher::headArrived()
{
    if (m_isJudged || !m_reply)
        return;
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status == 0)
        return;
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    const QByteArray etag = strongEtag(m_reply->rawHeader("ETag"));
    const FetchDecision decision = judgeResponse(
        m_progress, {status, length.isValid() ? length.toLongLong() : -1, m_reply->rawHeader("Content-Range"), etag});
    switch (decision.action) {
    case FetchAction::Deliver:
        m_isJudged = true;
        m_skip = decision.skip;
        m_acceptsRanges = m_reply->rawHeader("Accept-Ranges").trimmed().toLower() == "bytes";
        if (decision.length >= 0)
            m_progress.length = decision.length;
        if (m_progress.delivered == 0) {
            m_progress.etag = etag;
            describe();
        }
        return;
    case FetchAction::Redirect: {
        const QUrl to = httpaddress::redirected(m_reply->url(), m_reply->rawHeader("Location"));
        if (!to.isValid() || ++m_redirects > httpaddress::maxRedirects) {
            qDebug("Fetcher,redirect,refused.");
            finish(true);
        } else {
            describe(); // a store of files that the service redirects to knows nothing of loudness
            open(to);
        }
        return;
    }
    case FetchAction::Retry:
        qDebug("Fetcher,answer,status=%d.", status);
        retry("server error", retryAfterMs(m_reply->rawHeader("Retry-After")));
        return;
    case FetchAction::Refused:
        qDebug("Fetcher,answer,status=%d.", status);
        finish(true);
        return;
    case FetchAction::Complete:
        finish(false);
        return;
    }
}

void Fetcher::describe()
{
    const auto loudness = readLoudness(m_reply->rawHeader("Velmora-Gain"), m_reply->rawHeader("Velmora-Peak"));
    if (loudness && m_progress.delivered == 0)
        m_sink->describe(*loudness);
}

void Fetcher::replyFinished()
{
    m_isFinished = true;
    headArrived();
    if (m_reply && !m_isJudged && m_isFinished)
        retry("no answer");
    else
        pump();
}

void Fetcher::pump()
{
    if (!m_reply || !m_sink)
        return;
    headArrived();
    if (!m_reply || !m_isJudged)
        return;
    bool moved = false;
    while (m_reply->bytesAvailable() > 0 && m_sink->wanted()) {
        QByteArray bytes = m_reply->read(chunkSize);
        if (bytes.isEmpty())
            break;
        moved = true;
        const qint64 drop = qMin(m_skip, qint64(bytes.size()));
        m_skip -= drop;
        if (drop == bytes.size())
            continue;
        if (drop > 0)
            bytes.remove(0, drop);
        m_progress.delivered += bytes.size();
        m_attempts = m_hangs = 0;
        m_redirects = 0;
        m_sink->push(bytes);
    }
    if (m_isFinished && m_reply->bytesAvailable() == 0)
        settle();
    else if (!m_sink->wanted())
        m_idle.stop(); // the server waits for us
    else
        watchIdle(moved);
}

void Fetcher::watchIdle(bool hasMoved)
{
    if (hasMoved || !m_idle.isActive())
        m_silent.start();
    if (!m_idle.isActive())
        m_idle.start(m_limits.urgentConnectMs / idleChecks);
}

// Looked at often, because the fetch may have become urgent.
void Fetcher::checkIdle()
{
    if (m_silent.elapsed() >= idleLimitMs(m_limits, m_sink->isUrgent(), m_isConnected, m_hangs)) {
        ++m_hangs;
        retry("no data", 0, true);
    }
}

// All of the reply was read: is the file complete?
void Fetcher::settle()
{
    const bool clean = m_reply->error() == QNetworkReply::NoError;
    const FetchProgress &p = m_progress;
    const bool all = p.length >= 0 ? p.delivered >= p.length : clean && m_skip == 0;
    if (!all) {
        retry("cut off");
    } else if (p.length < 0 && p.delivered > 0 && m_acceptsRanges && m_askedAt != p.delivered) {
        // Without a length the end may be a lost connection: Qt sometimes reports even a truncated chunked body as
        // complete.
        m_askedAt = p.delivered;
        open(m_address);
    } else {
        finish(p.delivered == 0);
    }
}

void Fetcher::retry(const char *why, int askedMs, bool isHang)
{
    close();
    ++m_attempts;
    const bool onlyAsking = m_askedAt == m_progress.delivered && m_attempts >= askAttempts;
    const auto delay =
        retryDelayMs(m_limits, m_progress, {m_attempts, m_sink->isUrgent(), isHang, m_started.elapsed(), askedMs});
    if (onlyAsking || !delay) {
        finish(true);
        return;
    }
    qDebug("Fetcher,retry,%s after %lld bytes, in %d ms.", why, static_cast<long long>(m_progress.delivered), *delay);
    m_redirects = 0;
    m_retry.start(*delay);
}

// failed: no more bytes are available. What was delivered is played to its end; if there is nothing, the fetch failed.
void Fetcher::finish(bool failed)
{
    close();
    const auto sink = std::exchange(m_sink, nullptr);
    if (failed && m_progress.delivered == 0)
        sink->failed();
    else
        sink->complete();
}

} // namespace netcommon
