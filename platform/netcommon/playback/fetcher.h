#pragma once

#include "fetcherrules.h"
#include "levelling.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <memory>

class QNetworkAccessManager;
class QNetworkReply;

namespace netcommon {

// Receives the bytes of a fetch. Called from the fetcher's thread only. The answer of wanted() may change at any time,
// in any thread; whoever makes it true calls Fetcher::wake().
class FetchSink {
public:
    virtual ~FetchSink() = default;
    virtual bool wanted() const = 0;
    virtual bool isUrgent() const { return false; } // there is little left to play; may change at any time, too
    virtual void describe(const TrackLoudness &) {} // before the first bytes, if the server says so
    virtual void push(const QByteArray &bytes) = 0;
    virtual void complete() = 0; // nothing more follows; what was pushed is the file, or all of it that the server has
    virtual void failed() = 0;   // no byte could be fetched
};

// Fetches one file at a time over http or https, as fast as its sink wants it. It survives stalls, lost connections and
// restarts of the server: it requests the rest by range, or discards what it has already if the server has no ranges. A
// retry always opens a new connection, because the kept one may be the one that hangs.
// Lives in a thread with an event loop; start(), stop() and wake() may be called from any thread and return at once.
class Fetcher : public QObject {
    Q_OBJECT
public:
    explicit Fetcher(const FetchLimits &limits = {}, QObject *parent = nullptr);
    ~Fetcher() override;

    // Replaces the current fetch; its sink hears nothing more.
    void start(const QUrl &address, std::shared_ptr<FetchSink> sink);
    void stop();
    void wake();

private:
    void begin(const QUrl &address, const std::shared_ptr<FetchSink> &sink);
    void open(const QUrl &address);
    void close();
    void headArrived();
    // Tells the sink what the headers say of loudness.
    void describe();
    void replyFinished();
    void pump();
    void settle();
    void watchIdle(bool hasMoved);
    void checkIdle();
    void retry(const char *why, int askedMs = 0, bool isHang = false);
    void finish(bool failed);

    FetchLimits m_limits;
    QNetworkAccessManager *m_network;
    std::shared_ptr<FetchSink> m_sink; // null: idle
    QUrl m_address;
    FetchProgress m_progress;
    qint64 m_skip = 0;
    bool m_acceptsRanges = false;
    qint64 m_askedAt = -1;   // the body ended after this many bytes, and a further request asked for more
    QElapsedTimer m_started; // valid while m_sink is there
    int m_attempts = 0;      // failed ones since the last byte
    int m_hangs = 0;         // those of them that ended without a byte for too long
    int m_redirects = 0;
    QNetworkReply *m_reply = nullptr;
    bool m_isConnected = false; // m_reply's request was sent
    bool m_isJudged = false;    // m_reply's header was accepted; its body follows
    bool m_isFinished = false;  // m_reply receives no more bytes; some may still be unread
    QElapsedTimer m_silent;     // since the last byte, or since bytes are wanted
    QTimer m_idle;              // runs while bytes are wanted: looks at m_silent
    QTimer m_retry;
};

} // namespace netcommon
