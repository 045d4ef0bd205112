// The client library's reader of replies. The first byte chooses the command, the second the HTTP status.
#include "platform/ws/reply.h"
#include "scratchfile.h"

using namespace velmora::ws;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2)
        return 0;
    const Command *command = findCommand(data[0] % VLM_WS_MSGID_COUNT);
    if (!command)
        return 0;
    constexpr long statuses[] = {200, 200, 200, 400, 401, 404, 429, 500, 503};
    Arena memory;
    const Reply reply = parseReply(*command, statuses[data[1] % std::size(statuses)],
                                   {reinterpret_cast<const char *>(data) + 2, size - 2}, memory);
    fuzz::require(!reply.record || reply.code == VLM_WS_ERR_OK);
    fuzz::require(reply.retryAfter.count() >= 0);
    return 0;
}
