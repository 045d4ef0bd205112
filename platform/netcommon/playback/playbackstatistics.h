#pragma once

// What the device's menu system may ask about playback. Any thread, never blocks.
namespace netcommon::statistics {

// Seconds of audio that have passed the sink since the process began; preroll that nobody heard does not count.
double audioSecondsRendered();
// As Playback::getPbcState(): 4 stopped, 5 playing, 6 paused. Creates no Playback.
int playbackState();

} // namespace netcommon::statistics
