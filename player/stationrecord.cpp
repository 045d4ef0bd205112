#include "player/stationrecord.h"

#include "service/stationcopy.h"

namespace stationrecord {

VLM_STATION_MAP_T *copy(const VLM_STATION_MAP_T &source)
{
    return copyStation(source).release();
}

void release(VLM_STATION_MAP_T *record)
{
    StationCopy(record).reset();
}

bool rename(VLM_STATION_MAP_T &record, const QByteArray &name)
{
    return setStationName(record, name);
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
