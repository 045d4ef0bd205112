#pragma once

#include <QString>

// What the device's side asks about playback. Any thread; never blocks.
namespace netcommon::statistics {

// Seconds of audio played by the sink since the process began. Preroll that was never heard does not count.
double audioSecondsRendered();
// As Playback::getPbcState(): 4 stopped, 5 playing, 6 paused. Does not create Playback.
int playbackState();
// Whether sound can go on without the network: buffered sound is playing, or is paused by a person. Below the low water
// line a pause is the radio's own.
bool isSoundLeft();
// The picture that was downloaded last; empty after a failed download and while one is under way. GUI thread.
QString coverFile();
// The path of the address that it came from, without parameters. GUI thread.
QString coverPath();

} // namespace netcommon::statistics
