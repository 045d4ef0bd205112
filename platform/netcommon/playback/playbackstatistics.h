#pragma once

// What the device's menu system asks about playback. Any thread; never blocks.
namespace netcommon::statistics {

// Seconds of audio played by the sink since the process began. Preroll that was never heard does not count.
double audioSecondsRendered();
// As Playback::getPbcState(): 4 stopped, 5 playing, 6 paused. Does not create Playback.
int playbackState();

} // namespace netcommon::statistics
