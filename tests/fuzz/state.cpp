// The client library's state file. Whatever it holds, the device has an identity afterwards, and keeps it.
#include "platform/ws/devicestate.h"
#include "scratchfile.h"

using namespace velmora::ws;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto folder = fuzz::onlyFile("device", data, size).parent_path();
    const DeviceState first = loadDeviceState(folder, "/nowhere");
    fuzz::require(first.key.size() == 43);
    const DeviceState second = loadDeviceState(folder, "/nowhere");
    fuzz::require(first.address == second.address && first.key == second.key);
    return 0;
}
