#pragma once

#include "netcommon/netcommon_global.h"

#include <QtGlobal>

namespace netcommon {

// What is known of a playing track, milliseconds of the track.
struct BufferFacts {
    qint64 position = 0; // what the sink says
    qint64 end = 0;      // end of the last frame received
    qint64 length = -1;  // as the file's header states it, -1 unknown
    bool received = false;
};

// The snapshot of a track that has not ended: start <= end; amount 0 only while bytes are missing, because "all here
// and nothing left" is how the player screen recognises the end. Parsers count the last frame whole, so an end shortly
// behind the stated length is cut to it; a header that is far off is not believed.
IMTK_PB_CTRL_BUFFER_STATUS_T bufferStatus(const BufferFacts &facts);

// The snapshot of a track that has ended, from the very seconds that were reported as its total time.
IMTK_PB_CTRL_BUFFER_STATUS_T bufferStatusAtEnd(int totalSeconds);

// Whether the sink must be held back so that the clock does not run over silence. held: it is held already.
bool mustHold(bool held, qint64 amountMs, bool received);

} // namespace netcommon
