#pragma once

#include <QByteArray>

namespace netcommon {

// How long a fetch waits and how often it tries. Tests shorten it.
struct FetchLimits {
    int idleMs = 10000;     // without a byte while bytes are wanted: ask again
    int firstAttempts = 2;  // before the first byte
    int firstRetryMs = 250; // doubles with every further attempt
    int longestRetryMs = 5000;
};

// What a fetch has of a file so far.
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
    Deliver, // the body goes on where we are, after skip bytes
    Redirect,
    Retry,    // the server's trouble; may pass
    Refused,  // this address will not be had (or not any more: the file changed)
    Complete, // nothing is missing
};

struct FetchDecision {
    FetchAction action;
    qint64 skip = 0;    // bytes at the beginning of the body that we have already
    qint64 length = -1; // of the whole file, -1 unknown
};

FetchDecision judgeResponse(const FetchProgress &progress, const FetchResponse &response);

// Before the first byte attempts are counted; later a fetch never gives up by itself: whoever listens decides.
bool mayRetry(const FetchLimits &limits, const FetchProgress &progress, int attempts);
// attempts: failed ones in a row, at least 1.
int retryDelayMs(const FetchLimits &limits, int attempts);
// The validator to resume with, empty for a weak or missing one.
QByteArray strongEtag(const QByteArray &header);

} // namespace netcommon
