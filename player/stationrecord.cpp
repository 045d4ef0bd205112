#include "player/stationrecord.h"

#include <cstdlib>
#include <cstring>

namespace stationrecord {

namespace {

bool copyText(char *&target, const char *source)
{
    target = source ? strdup(source) : nullptr;
    return target || !source;
}

} // namespace

VLM_STATION_MAP_T *copy(const VLM_STATION_MAP_T &source)
{
    auto *record = static_cast<VLM_STATION_MAP_T *>(std::malloc(sizeof(VLM_STATION_MAP_T)));
    if (!record)
        return nullptr;
    std::memset(record, 0, sizeof *record); // padding included
    record->fgFlag0 = source.fgFlag0;
    record->allowRename = source.allowRename;
    record->allowDelete = source.allowDelete;
    record->fgFlag20 = source.fgFlag20;
    record->isShared = source.isShared;
    if (copyText(record->stationId, source.stationId) && copyText(record->stationToken, source.stationToken) &&
        copyText(record->stationStr16, source.stationStr16) && copyText(record->stationStr24, source.stationStr24) &&
        copyText(record->stationName, source.stationName))
        return record;
    release(record);
    return nullptr;
}

void release(VLM_STATION_MAP_T *record)
{
    if (!record)
        return;
    std::free(record->stationId);
    std::free(record->stationToken);
    std::free(record->stationStr16);
    std::free(record->stationStr24);
    std::free(record->stationName);
    std::free(record);
}

bool rename(VLM_STATION_MAP_T &record, const QByteArray &name)
{
    char *text = strdup(name.constData());
    if (!text)
        return false;
    std::free(record.stationName);
    record.stationName = text;
    return true;
}

bool lessThan(const VLM_STATION_MAP_T *a, const VLM_STATION_MAP_T *b)
{
    return QString::fromLatin1(a->stationName).toLower() < QString::fromLatin1(b->stationName).toLower();
}

QString token(const VLM_STATION_MAP_T *record)
{
    return record ? QString::fromLatin1(record->stationToken) : QString();
}

QString name(const VLM_STATION_MAP_T *record)
{
    return record ? QString::fromUtf8(record->stationName) : QString();
}

int rowOfRecord(int index)
{
    return index + 1;
}

int indexOfRow(int row)
{
    return row - 1;
}

int indexOfToken(const QList<VLM_STATION_MAP_T *> &records, const QString &wanted)
{
    for (int i = 0; i < records.size(); ++i)
        if (token(records.at(i)) == wanted)
            return i;
    return -1;
}

int rowOfLastStation(const QString &tapestryToken, const QList<VLM_STATION_MAP_T *> &records, const QString &last)
{
    if (tapestryToken == last)
        return 0;
    return rowOfRecord(indexOfToken(records, last)); // none: row 0
}

int rowAfterDeletion(int row, int rowCount)
{
    return row == rowCount - 1 ? row - 1 : row;
}

Kind kindOfRow(int row, const QList<VLM_STATION_MAP_T *> &records)
{
    const int index = indexOfRow(row);
    if (index < 0)
        return Kind::Tapestry;
    return index < records.size() && records.at(index)->isShared ? Kind::Shared : Kind::Ordinary;
}

const char *iconPath(Kind kind, bool isPlaying)
{
    switch (kind) {
    case Kind::Tapestry:
        return isPlaying ? ":/images/common_tapestry_icon_s_01.png" : ":/images/common_tapestry_icon_n_01.png";
    case Kind::Shared:
        return isPlaying ? ":/images/common_station_icon_arrow_s.png" : ":/images/common_station_icon_arrow_n.png";
    case Kind::Ordinary:
        break;
    }
    return isPlaying ? ":/images/common_station_icon_s.png" : ":/images/common_station_icon_n.png";
}

} // namespace stationrecord
