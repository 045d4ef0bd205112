#pragma once

#include "service/stationcopy.h"

#include <QString>

#include <vector>

// The player screen's own copies of station records, and the rules that work on them. List row 0 is always the Tapestry
// station, which has no record: row r > 0 shows record r - 1.
namespace stationrecord {

using List = std::vector<StationCopy>;

// Compares the names as ASCII, ignoring case. The order of equal names is not defined.
bool lessThan(const VLM_STATION_MAP_T *a, const VLM_STATION_MAP_T *b);

QString token(const VLM_STATION_MAP_T *record); // empty for a null record or token
QString name(const VLM_STATION_MAP_T *record);  // UTF-8
int rowOfRecord(int index);
int indexOfRow(int row);                                      // -1 for the Tapestry row
int indexOfToken(const List &records, const QString &wanted); // -1: none
const VLM_STATION_MAP_T *at(const List &records, int index);  // null outside the list
// The row of the station that was heard last; 0 when there is no such station (any more).
int rowOfLastStation(const QString &tapestryToken, const List &records, const QString &last);
// The row to focus after row `row` of `rowCount` has been deleted.
int rowAfterDeletion(int row, int rowCount);

enum class Kind { Tapestry, Ordinary, Shared };
Kind kindOfRow(int row, const List &records);
const char *iconPath(Kind kind, bool isPlaying);

} // namespace stationrecord
