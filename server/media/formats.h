#pragma once

#include "server/media/reading.h"

#include <cstdint>

// Reads one open file of a kind that velmora-media cannot decode; called in the program velmora-media-formats only,
// one thread. The descriptor is a regular file, open for reading, and stays the caller's; its offset is not used.
namespace velmora::media {

// Of raw AAC and DSD files; of everything else velmora-media reads the tags.
Verdict readFormatTags(int file, FieldWriter &answer);
Verdict analyseFormat(int file, FieldWriter &answer);
// Writes the sound as FLAC into the empty file `to`, from its beginning, with 16 bits a sample, or 24 where a lossless
// file has more than 16. NoRoom when that cannot be written; Refused when it would need more than `mostBytes`.
Verdict transcode(int file, int to, uint64_t mostBytes, FieldWriter &answer);

} // namespace velmora::media
