#pragma once

#include "server/engine/enginemusic.h"

#include <atomic>

namespace velmora::server {

class Store;

// What stations may play, read from the store in pages, so that no request waits for all of it: music that is present
// and whole. Throws StoreError. `isStopping` ends it early; what was read so far is returned then.
engine::EngineMusic loadEngineMusic(Store &store, const std::atomic<bool> &isStopping);
// Ids of the tracks that it would read now, in their order.
std::vector<int64_t> playingTracks(Store &store, const std::atomic<bool> &isStopping);

} // namespace velmora::server
