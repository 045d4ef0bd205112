#pragma once

#include <QByteArray>

namespace netcommon {

// Timeouts and retries of a fetch. Tests use shorter ones.
struct FetchLimits {
    int idleMs = 10000;     // without a byte while bytes are wanted: retry
    int firstAttempts = 2;  // before the first byte
    int firstRetryMs = 250; // doubles with each attempt
    int longestRetryMs = 5000;
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

// Attempts are limited before the first byte only. Later a fetch never gives up by itself; the playback worker decides.
bool mayRetry(const FetchLimits &limits, const FetchProgress &progress, int attempts);
// attempts: consecutive failures, at least 1.
int retryDelayMs(const FetchLimits &limits, int attempts);
// The validator to resume with, empty for a weak or missing one.
QByteArray strongEtag(const QByteArray &header);

} // namespace netcommon
