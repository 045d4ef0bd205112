#pragma once

#include "velmora_ws.h"

#include <QList>
#include <QString>

// The player screen's own copies of station records, and what follows from them. List row 0 is always the Tapestry
// station, which has no record: row r > 0 shows record r - 1.
namespace stationrecord {

// Deep copy on the C heap; null when memory runs out. Null strings stay null.
VLM_STATION_MAP_T *copy(const VLM_STATION_MAP_T &source);
void release(VLM_STATION_MAP_T *record); // null is harmless
// False when memory runs out: the old name stays.
bool rename(VLM_STATION_MAP_T &record, const QByteArray &name);

// Names as ASCII, without regard to case. Equal names come in either order.
bool lessThan(const VLM_STATION_MAP_T *a, const VLM_STATION_MAP_T *b);

QString token(const VLM_STATION_MAP_T *record); // empty for a null record or token
QString name(const VLM_STATION_MAP_T *record);  // UTF-8
int rowOfRecord(int index);
int indexOfRow(int row);                                                            // -1 for the Tapestry row
int indexOfToken(const QList<VLM_STATION_MAP_T *> &records, const QString &wanted); // -1: none
// The row of the station that was heard last; 0 when there is no such station (any more).
int rowOfLastStation(const QString &tapestryToken, const QList<VLM_STATION_MAP_T *> &records, const QString &last);
// The row to focus after row `row` of `rowCount` has been deleted.
int rowAfterDeletion(int row, int rowCount);

enum class Kind { Tapestry, Ordinary, Shared };
Kind kindOfRow(int row, const QList<VLM_STATION_MAP_T *> &records);
const char *iconPath(Kind kind, bool isPlaying);

} // namespace stationrecord
