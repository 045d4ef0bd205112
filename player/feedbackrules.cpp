#include "player/feedbackrules.h"

namespace feedbackrules {

Verdict judge(Action action, const Situation &situation)
{
    const bool isRating = action == Action::ThumbUp || action == Action::ThumbDown;
    const bool mayLeaveTrack = action == Action::ThumbDown || action == Action::Sleep;
    if (isRating && !situation.isActionAllowed)
        return Verdict::Ignore;
    if (mayLeaveTrack && !situation.isPlayReady)
        return Verdict::Ignore;
    if (!situation.isEntryValid)
        return Verdict::Ignore;
    if (action != Action::Explain && !situation.isPermitted)
        return Verdict::Ignore;
    if (situation.isAd)
        return Verdict::NotForAds;
    if (!situation.hasTrack)
        return Verdict::Ignore;
    if (isRating && !situation.isRatingAllowed)
        return Verdict::NotForSharedStations;
    return Verdict::Go;
}

QString joinTraits(const QStringList &traits)
{
    return traits.isEmpty() ? QString() : traits.join(QLatin1Char(',')) + QLatin1Char('.');
}

} // namespace feedbackrules
