#include "service/stationcopy.h"

#include <cstdlib>
#include <cstring>

namespace {

bool copyText(char *&target, const char *source)
{
    target = source ? strdup(source) : nullptr;
    return target || !source;
}

} // namespace

void FreeStation::operator()(VLM_STATION_MAP_T *station) const
{
    std::free(station->stationId);
    std::free(station->stationToken);
    std::free(station->stationStr16);
    std::free(station->stationStr24);
    std::free(station->stationName);
    std::free(station);
}

StationCopy copyStation(const VLM_STATION_MAP_T &source)
{
    StationCopy copy(static_cast<VLM_STATION_MAP_T *>(std::calloc(1, sizeof(VLM_STATION_MAP_T))));
    if (!copy)
        return nullptr;
    copy->fgFlag0 = source.fgFlag0;
    copy->allowRename = source.allowRename;
    copy->allowDelete = source.allowDelete;
    copy->fgFlag20 = source.fgFlag20;
    copy->isShared = source.isShared;
    const bool isWhole =
        copyText(copy->stationId, source.stationId) && copyText(copy->stationToken, source.stationToken) &&
        copyText(copy->stationStr16, source.stationStr16) && copyText(copy->stationStr24, source.stationStr24) &&
        copyText(copy->stationName, source.stationName);
    return isWhole ? std::move(copy) : nullptr;
}

bool setStationName(VLM_STATION_MAP_T &copy, const QByteArray &name)
{
    char *text = strdup(name.constData());
    if (!text)
        return false;
    std::free(copy.stationName);
    copy.stationName = text;
    return true;
}
