#pragma once

#include <QString>
#include <QStringList>

// Decides whether the listener may rate, put to sleep, bookmark or ask about the playing entry, and which message
// a refusal shows.
namespace feedbackrules {

enum class Action { ThumbUp, ThumbDown, Sleep, BookmarkSong, BookmarkArtist, Explain };

struct Situation {
    bool isActionAllowed = true; // the root widget's check
    bool isPlayReady = true;
    bool isEntryValid = true; // index inside the playlist
    bool isPermitted = true;  // no request of this kind is pending for this track
    bool isAd = false;
    bool hasTrack = true; // the entry has its map
    bool isRatingAllowed = true;
};

enum class Verdict { Go, Ignore, NotForAds, NotForSharedStations };

Verdict judge(Action action, const Situation &situation);

// "A,B."; an empty text for no traits.
QString joinTraits(const QStringList &traits);

} // namespace feedbackrules
