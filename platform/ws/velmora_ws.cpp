// The C interface without the request functions: life cycle, handles, hardware address.
#include "velmora_ws.h"

#include "config.h"
#include "devicestate.h"
#include "handles.h"
#include "requestbody.h"
#include "submit.h"
#include "worker.h"

#include <cstdio>
#include <cstring>
#include <mutex>
#include <new>
#include <system_error>

using namespace velmora::ws;

namespace {

// Never destroyed: a process may end without velmora_ws_uninit.
struct Library {
    std::mutex mutex;
    std::shared_ptr<Worker> worker; // null: not initialised
};

Library &library()
{
    static auto *instance = new Library;
    return *instance;
}

} // namespace

namespace velmora::ws {

VLM_WS_EXT_ERRCODE_T submit(VLM_WS_MSGID_T id, const void *params, VELMORA_WS_CALLBACK_T callback, VOID *tag,
                            HANDLE_T *outHandle)
{
    std::shared_ptr<Worker> worker;
    {
        std::lock_guard lock(library().mutex);
        worker = library().worker;
    }
    if (!worker)
        return VLM_WS_ERR_NOT_INITIALISED;
    const Command &command = *findCommand(id);
    if (!hasRequiredParams(command, params) || !hasValidText(command, params))
        return VLM_WS_ERR_INVALID_ARGUMENT;
    try {
        auto request = std::make_unique<Request>();
        request->record.vlm_ws_CmdID = id;
        request->record.params = copyParams(command, params, request->memory);
        request->callback = callback;
        request->tag = tag;
        return worker->add(std::move(request), outHandle) ? VLM_WS_ERR_OK : VLM_WS_ERR_NOT_INITIALISED;
    } catch (const std::bad_alloc &) {
        return VLM_WS_ERR_OUT_OF_MEMORY;
    }
}

} // namespace velmora::ws

VLM_WS_EXT_ERRCODE_T velmora_ws_init(void)
{
    std::lock_guard lock(library().mutex);
    if (library().worker)
        return VLM_WS_ERR_OK;
    try {
        const Config config = loadConfig();
        if (config.server.empty())
            std::fprintf(stderr, "libvelmora_ws: no server is configured (VELMORA_WS_SERVER or ws.conf)\n");
        const auto worker = std::make_shared<Worker>(config);
        worker->start();
        library().worker = worker;
        return VLM_WS_ERR_OK;
    } catch (const std::bad_alloc &) {
        return VLM_WS_ERR_OUT_OF_MEMORY;
    } catch (const std::system_error &) { // no more threads
        return VLM_WS_ERR_OUT_OF_MEMORY;
    }
}

VLM_WS_EXT_ERRCODE_T velmora_ws_uninit(void)
{
    std::shared_ptr<Worker> worker;
    {
        std::lock_guard lock(library().mutex);
        worker.swap(library().worker);
    }
    if (!worker)
        return VLM_WS_ERR_NOT_INITIALISED;
    worker->end();
    return VLM_WS_ERR_OK;
}

VLM_WS_EXT_ERRCODE_T velmora_ws_release_handle(HANDLE_T handle)
{
    if (handle != 0 && Handles::instance().release(handle))
        return VLM_WS_ERR_OK;
    std::fprintf(stderr, "libvelmora_ws: release of handle 0x%lx, which is none of a completed request\n", handle);
    return VLM_WS_ERR_INVALID_ARGUMENT;
}

VLM_WS_EXT_ERRCODE_T velmora_ws_utility_get_mac(char *buffer, int size)
{
    if (!buffer || size < 6)
        return VLM_WS_ERR_INVALID_ARGUMENT;
    try {
        const DeviceState state = deviceState(loadConfig().stateDir);
        std::memcpy(buffer, state.address.data(), state.address.size());
        if (size > 6)
            buffer[6] = '\0';
        return VLM_WS_ERR_OK;
    } catch (const std::exception &) {
        return VLM_WS_ERR_OUT_OF_MEMORY;
    }
}
