#include "mediamodule.h"

// For programs that the media module's objects are linked into.
const netcommon::MediaModule &netcommon::mediaModule()
{
    return *netcommonMediaModule();
}
