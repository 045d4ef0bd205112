#pragma once

#include "fetcherrules.h"

#include <QObject>
#include <QTimer>
#include <QUrl>

#include <memory>

class QNetworkAccessManager;
class QNetworkReply;

namespace netcommon {

// Where a fetch puts its bytes. Called from the fetcher's thread only, except that wanted() may change at any time:
// whoever makes it true calls Fetcher::wake().
class FetchSink {
public:
    virtual ~FetchSink() = default;
    virtual bool wanted() const = 0;
    virtual void push(const QByteArray &bytes) = 0;
    virtual void complete() = 0; // nothing more will come; what was pushed is the file, or all that can be had of it
    virtual void failed() = 0;   // not a single byte could be had
};

// Fetches one file at a time over http or https, as fast as its sink wants it, across stalls, cuts and restarts of the
// server: it asks for the rest by range, or discards what it has where ranges are not supported. Lives in a thread
// with an event loop; start(), stop() and wake() may be called from any thread and return at once.
class Fetcher : public QObject {
    Q_OBJECT
public:
    explicit Fetcher(const FetchLimits &limits = {}, QObject *parent = nullptr);
    ~Fetcher() override;

    // Replaces what is under way, whose sink hears nothing more.
    void start(const QUrl &address, std::shared_ptr<FetchSink> sink);
    void stop();
    void wake();

private:
    void begin(const QUrl &address, const std::shared_ptr<FetchSink> &sink);
    void open(const QUrl &address);
    void close();
    void headArrived();
    void replyFinished();
    void pump();
    void settle();
    void retry(const char *why);
    void finish(bool failed);

    FetchLimits m_limits;
    QNetworkAccessManager *m_network;
    std::shared_ptr<FetchSink> m_sink; // null: idle
    QUrl m_address;
    FetchProgress m_progress;
    qint64 m_skip = 0;
    bool m_acceptsRanges = false;
    qint64 m_askedAt = -1; // after this many bytes the body ended, and it was asked whether there are more
    int m_attempts = 0;    // failed ones since the last byte
    int m_redirects = 0;
    QNetworkReply *m_reply = nullptr;
    bool m_judged = false;   // m_reply's head was read and its body is ours
    bool m_finished = false; // m_reply gets no more bytes; some may still lie in it
    QTimer m_idle;
    QTimer m_retry;
};

} // namespace netcommon
