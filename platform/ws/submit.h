#pragma once

#include "velmora_ws.h"

namespace velmora::ws {

// Checks and copies the command's parameter structure and queues the request. `params` is null for commands without.
VLM_WS_EXT_ERRCODE_T submit(VLM_WS_MSGID_T id, const void *params, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                            HANDLE_T *outHandle);

} // namespace velmora::ws
