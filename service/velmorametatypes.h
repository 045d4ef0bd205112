#pragma once

// Registers the argument types of queued signals under the names that connections compare: "HANDLE_T",
// "VLM_WS_EXT_ERRCODE_T", "VOID*", "NETWORk_EVENT_T". Must run before the first queued emission; may run twice.
void registerVelmoraMetaTypes();
