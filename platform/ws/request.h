#pragma once

#include "arena.h"
#include "velmora_ws.h"

namespace velmora::ws {

// A request record with everything that it owns. `record` is first: its address is the handle.
struct Request {
    VLM_WS_REQUEST_T record{};
    VELMORA_WS_CALLBACK_T callback = nullptr;
    VOID *tag = nullptr;
    Arena memory;

    HANDLE_T handle() const { return reinterpret_cast<HANDLE_T>(&record); }
};

} // namespace velmora::ws
