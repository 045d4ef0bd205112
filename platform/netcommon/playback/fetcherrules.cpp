#include "fetcherrules.h"

#include "httpaddress.h"

#include <algorithm>

namespace netcommon {

namespace {

struct Range {
    qint64 first = -1;
    qint64 total = -1;
};

// "bytes 100-199/200" or "bytes 100-199/*"
Range parseRange(const QByteArray &header)
{
    const QByteArray text = header.trimmed();
    if (!text.toLower().startsWith("bytes "))
        return {};
    const QByteArray span = text.mid(6);
    const qsizetype dash = span.indexOf('-'), slash = span.indexOf('/');
    if (dash <= 0 || slash < dash)
        return {};
    bool firstOk = false, totalOk = false;
    Range range{span.left(dash).trimmed().toLongLong(&firstOk), span.mid(slash + 1).trimmed().toLongLong(&totalOk)};
    if (!firstOk || range.first < 0)
        range.first = -1;
    if (!totalOk || range.total < 0)
        range.total = -1;
    return range;
}

bool differ(qint64 a, qint64 b)
{
    return a >= 0 && b >= 0 && a != b;
}

} // namespace

FetchDecision judgeResponse(const FetchProgress &progress, const FetchResponse &response)
{
    const int status = response.status;
    if (httpaddress::isRedirect(status))
        return {FetchAction::Redirect};
    const bool otherFile = !progress.etag.isEmpty() && !response.etag.isEmpty() && progress.etag != response.etag;
    if (status == 200) {
        if (progress.delivered > 0 && (otherFile || differ(progress.length, response.contentLength)))
            return {FetchAction::Refused}; // joining two files would be noise
        return {FetchAction::Deliver, progress.delivered, response.contentLength};
    }
    if (status == 206) {
        const Range range = parseRange(response.contentRange);
        if (otherFile || differ(progress.length, range.total) || range.first > progress.delivered)
            return {FetchAction::Refused};
        if (range.first < 0)
            return {FetchAction::Retry};
        return {FetchAction::Deliver, progress.delivered - range.first, range.total};
    }
    if (status == 416 && progress.delivered > 0)
        return {progress.length < 0 || progress.delivered >= progress.length ? FetchAction::Complete
                                                                             : FetchAction::Refused};
    if (status == 408 || status == 425 || status == 429 || status >= 500)
        return {FetchAction::Retry};
    if (status >= 200)
        return {FetchAction::Refused};
    return {FetchAction::Retry};
}

std::optional<int> retryDelayMs(const FetchLimits &limits, const FetchProgress &progress, const FetchFailure &failure)
{
    const int doublings = std::clamp(failure.attempts - 1, 0, 16);
    const int longest = failure.isUrgent ? limits.longestUrgentRetryMs : limits.longestRetryMs;
    int delay = static_cast<int>(std::min<qint64>(qint64(limits.firstRetryMs) << doublings, longest));
    if (failure.isUrgent && failure.isHang)
        delay = 0;
    delay = std::max(delay, std::min(failure.askedMs, limits.longestAskedMs));
    if (progress.delivered == 0 && failure.elapsedMs + delay > limits.firstPatienceMs)
        return {};
    return delay;
}

int idleLimitMs(const FetchLimits &limits, bool isUrgent, bool isConnected, int hangs)
{
    if (!isUrgent)
        return limits.idleMs;
    const int usual = isConnected ? limits.urgentIdleMs : limits.urgentConnectMs;
    return hangs % 3 == 2 ? 3 * usual : usual;
}

int retryAfterMs(const QByteArray &header)
{
    bool isNumber = false;
    const int seconds = header.trimmed().toInt(&isNumber);
    return isNumber && seconds > 0 ? std::min(seconds, 86400) * 1000 : 0;
}

QByteArray strongEtag(const QByteArray &header)
{
    return header.startsWith('"') ? header : QByteArray();
}

} // namespace netcommon
