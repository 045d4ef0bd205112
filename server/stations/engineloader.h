#pragma once

#include "server/engine/enginemusic.h"

#include <atomic>

namespace velmora::server {

class Store;

// Reads the music that stations may play: what is present and whole. Reads page by page, so that no request waits for
// all of it. Throws StoreError. When `isStopping` ends it early, it returns what it has read so far.
engine::EngineMusic loadEngineMusic(Store &store, const std::atomic<bool> &isStopping);
// Ids of the tracks that it would read now, in their order.
std::vector<int64_t> playingTracks(Store &store, const std::atomic<bool> &isStopping);

} // namespace velmora::server
