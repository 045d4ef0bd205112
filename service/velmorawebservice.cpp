#include "service/velmorawebservice.h"

#include "service/wsreply.h"

#include <QDebug>

#include <algorithm>
#include <cstdlib>
#include <cstring>

VelmoraWebService *VelmoraWebService::m_instance = nullptr;
char *VelmoraWebService::m_macAddress = nullptr;
int VelmoraWebService::m_macSize = 0;

VelmoraWebService *VelmoraWebService::getInstance()
{
    if (!m_instance)
        m_instance = new VelmoraWebService;
    return m_instance;
}

VelmoraWebService::VelmoraWebService()
{
    qDebug("new VelmoraWebService\n");
}

VelmoraWebService::~VelmoraWebService()
{
    qDebug("del VelmoraWebService..\n");
    m_instance = nullptr;
    forgetRenewal();
    std::free(m_macAddress);
    m_macAddress = nullptr;
    m_macSize = 0;
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::init()
{
    return velmora_ws_init();
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::uninit()
{
    return velmora_ws_uninit();
}

VLM_WS_EXT_ERRCODE_T VelmoraWebService::getMac(char *buffer, int size)
{
    if (!buffer || size <= 0)
        return VLM_WS_ERR_INVALID_ARGUMENT;
    VLM_WS_EXT_ERRCODE_T result = VLM_WS_ERR_OK;
    if (!m_macAddress) {
        m_macAddress = static_cast<char *>(std::calloc(1, static_cast<size_t>(size)));
        if (!m_macAddress)
            return VLM_WS_ERR_OUT_OF_MEMORY;
        m_macSize = size;
        result = velmora_ws_utility_get_mac(m_macAddress, size);
    }
    const int cached = std::min(size, m_macSize);
    std::memcpy(buffer, m_macAddress, static_cast<size_t>(cached));
    std::memset(buffer + cached, 0, static_cast<size_t>(size - cached));
    return result;
}
