#include "service/velmorametatypes.h"

#include "netcommon/netcommon_global.h"
#include "velmora_ws.h"

#include <QMetaType>

void registerVelmoraMetaTypes()
{
    qRegisterMetaType<HANDLE_T>("HANDLE_T");
    qRegisterMetaType<VLM_WS_EXT_ERRCODE_T>("VLM_WS_EXT_ERRCODE_T");
    qRegisterMetaType<VOID *>("VOID*");
    qRegisterMetaType<NETWORk_EVENT_T>("NETWORk_EVENT_T");
}
