#pragma once

#include <QByteArray>

#include <optional>

namespace netcommon {

// Timeouts and retries of a fetch. Tests use shorter ones.
struct FetchLimits {
    int idleMs = 10000; // without a byte while bytes are wanted: retry
    // The same for an urgent fetch, before and after the request was sent over a connection. Every third attempt gets
    // three times as long, for a server that is just slow.
    int urgentConnectMs = 2000;
    int urgentIdleMs = 3000;
    int firstPatienceMs = 10000; // no retry begins later than this, while no byte has come
    int firstRetryMs = 250;      // doubles with each attempt
    int longestRetryMs = 5000;
    int longestUrgentRetryMs = 1000;
    int longestAskedMs = 30000; // the server's Retry-After is obeyed up to this
};

// The state of a fetch.
struct FetchProgress {
    qint64 delivered = 0; // bytes handed over
    qint64 length = -1;   // of the whole file, -1 unknown
    QByteArray etag;      // strong validators only
};

struct FetchResponse {
    int status = 0;
    qint64 contentLength = -1;
    QByteArray contentRange; // header as sent
    QByteArray etag;
};

// What a retry depends on.
struct FetchFailure {
    int attempts = 1; // consecutive failures, at least 1
    bool isUrgent = false;
    bool isHang = false;  // it waited long already
    qint64 elapsedMs = 0; // since the start of the fetch
    int askedMs = 0;      // Retry-After, 0: none
};

enum class FetchAction {
    Deliver, // the body continues at our position, after skip bytes
    Redirect,
    Retry,    // a server error that may pass
    Refused,  // the file is not available, or it has changed
    Complete, // nothing is missing
};

struct FetchDecision {
    FetchAction action;
    qint64 skip = 0;    // bytes at the beginning of the body that were delivered already
    qint64 length = -1; // of the whole file, -1 unknown
};

FetchDecision judgeResponse(const FetchProgress &progress, const FetchResponse &response);

// When to try again, in milliseconds from now; empty: give up. A fetch gives up before its first byte only. Later the
// playback worker decides.
std::optional<int> retryDelayMs(const FetchLimits &limits, const FetchProgress &progress, const FetchFailure &failure);
// How long a fetch may be without a byte. hangs: attempts that ended so since the last byte.
int idleLimitMs(const FetchLimits &limits, bool isUrgent, bool isConnected, int hangs);
// The milliseconds of a Retry-After header in seconds; 0 for anything else.
int retryAfterMs(const QByteArray &header);
// The validator to resume with, empty for a weak or missing one.
QByteArray strongEtag(const QByteArray &header);

} // namespace netcommon
