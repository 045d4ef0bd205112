#pragma once

#include "bench/stationpieces.h"
#include "server/engine/engineindex.h"

#include <memory>
#include <string>
#include <vector>

// What the measurements of stations share: pieces as the engine sees them, and estimates.
namespace bench {

enum class Tags { Perfect, Bad, None };

// The last three are coarse.
extern const std::vector<std::string> styleNames;

// `noise`: how many standard deviations of each number of a descriptor are added by chance.
velmora::engine::EngineMusic musicOf(const std::vector<StationPiece> &pieces, Tags tags, double noise, bool isHeard,
                                     unsigned seed);
std::shared_ptr<const velmora::engine::EngineIndex> indexOf(const std::vector<StationPiece> &pieces, Tags tags,
                                                            double noise, bool isHeard, unsigned seed);

// Mean and half of its 95 % interval.
struct Estimate {
    double mean = 0, half = 0;
};
Estimate estimate(const std::vector<double> &values);
std::string text(const Estimate &value);

// Prints a value with its lower bound.
void atLeast(const std::string &name, double value, double bound, const std::string &remark = {});

// Lists, memory and candidates with 100,000 tracks made of these pieces.
void measureSize(const std::vector<StationPiece> &pieces);

} // namespace bench
