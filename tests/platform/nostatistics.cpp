// The playback's own statistics, which libNetCommon does not export: a test that needs them fails here.
#include "platform/netcommon/playback/playbackstatistics.h"

namespace netcommon::statistics {

double audioSecondsRendered()
{
    return -1;
}
int playbackState()
{
    return -1;
}

} // namespace netcommon::statistics
