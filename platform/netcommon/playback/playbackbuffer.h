#pragma once

#include "netcommon/netcommon_global.h"

#include <QtGlobal>

namespace netcommon {

// What is known of a playing track, milliseconds of the track.
struct BufferFacts {
    qint64 position = 0; // what the sink says
    qint64 end = 0;      // end of the last frame received
    qint64 length = -1;  // as the file's header states it, -1 unknown
    bool isReceived = false;
};

// The snapshot of a track that has not ended: start <= end. The amount is 0 only while bytes are missing, because the
// player screen takes "all received, nothing left" for the end. Parsers count the last frame in full, so an end shortly
// after the stated length is cut to it; a length that is far off is ignored.
IMTK_PB_CTRL_BUFFER_STATUS_T bufferStatus(const BufferFacts &facts);

// The snapshot of a track that has ended; totalSeconds as reported to the screens.
IMTK_PB_CTRL_BUFFER_STATUS_T bufferStatusAtEnd(int totalSeconds);

// What is known of a track whose play result has not been reported yet.
struct StartFacts {
    qint64 bufferedMs = 0;    // of the track
    qint64 arrivingForMs = 0; // since its first byte came
    bool isReceived = false;  // all of it
};

// Whether it may begin without a false start: the player screen's first look at the buffer, one tick after the play
// result, must not find it below the low water line. So there is enough for that already, or the whole track, or it
// arrives at twice playing speed and will be enough by then.
bool mayStart(const StartFacts &facts);

// How long before the last sample the next track is asked for. The player screen acts on it at its next tick; the rest
// of the time is for fetching and decoding, so that the next track is ready when this one ends.
constexpr qint64 nextTrackLeadMs = netcommon::waterTickMs * 3 / 2;

// Whether the sink must be paused, so that the clock does not run while there is nothing to play. isHeld: it is held
// already.
bool mustHold(bool isHeld, qint64 amountMs, bool isReceived);

} // namespace netcommon
