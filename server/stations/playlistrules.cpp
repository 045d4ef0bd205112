#include "server/stations/playlistrules.h"

namespace velmora::server {

int adPosition(const Random &random)
{
    return 1 + static_cast<int>(random(3));
}

} // namespace velmora::server
