#pragma once

#include "velmora_ws.h"

#include <QByteArray>

#include <memory>

// A deep copy of a station record of the library, which outlives the reply that it was read from. The record and its
// texts lie on the C heap; a text that is null stays null.
struct FreeStation {
    void operator()(VLM_STATION_MAP_T *station) const;
};
using StationCopy = std::unique_ptr<VLM_STATION_MAP_T, FreeStation>;

StationCopy copyStation(const VLM_STATION_MAP_T &source); // null when memory runs out
// `name` is copied. False when memory runs out: the old name stays.
bool setStationName(VLM_STATION_MAP_T &copy, const QByteArray &name);
