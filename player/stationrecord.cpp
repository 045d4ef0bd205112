#include "player/stationrecord.h"

#include <algorithm>

namespace stationrecord {

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

int indexOfToken(const List &records, const QString &wanted)
{
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&wanted](const StationCopy &record) { return token(record.get()) == wanted; });
    return found == records.end() ? -1 : static_cast<int>(found - records.begin());
}

const VLM_STATION_MAP_T *at(const List &records, int index)
{
    return index >= 0 && index < static_cast<int>(records.size()) ? records[static_cast<std::size_t>(index)].get()
                                                                  : nullptr;
}

int rowOfLastStation(const QString &tapestryToken, const List &records, const QString &last)
{
    if (tapestryToken == last)
        return 0;
    return rowOfRecord(indexOfToken(records, last)); // none: row 0
}

int rowAfterDeletion(int row, int rowCount)
{
    return row == rowCount - 1 ? row - 1 : row;
}

Kind kindOfRow(int row, const List &records)
{
    const int index = indexOfRow(row);
    if (index < 0)
        return Kind::Tapestry;
    const VLM_STATION_MAP_T *record = at(records, index);
    return record && record->isShared ? Kind::Shared : Kind::Ordinary;
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
