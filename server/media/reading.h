#pragma once

#include "server/media/wire.h"

// Reads one open file. The parsers of media live here and in formats.h and nowhere else; called in the program
// velmora-media only, one thread. The descriptor is a regular file, open for reading, and stays the caller's; its
// offset is not used.
namespace velmora::media {

class FolderCharset;

// `charset` knows the files read before in the same folder.
Verdict readTags(int file, FolderCharset &charset, FieldWriter &answer);
Verdict readEmbeddedPicture(int file, FieldWriter &answer);
Verdict readCoverFile(int file, FieldWriter &answer);
Verdict analyse(int file, FieldWriter &answer);

// The answer that a file cannot be used.
inline Verdict refused(FieldWriter &answer, std::string_view why)
{
    answer.clear();
    answer.bytes(Key::Problem, why);
    return Verdict::Refused;
}

// Covers are scaled down to fit; what is larger than mostPicturePixels on a side or mostPictureBytes is refused.
constexpr int coverPixels = 640;
constexpr int mostPicturePixels = 10'000;
constexpr size_t mostPictureBytes = 20 * 1024 * 1024;
// Picture file in, JPEG of at most coverPixels a side out. Throws std::runtime_error with what is wrong.
std::string scaledCover(std::string_view picture);

// 16 bytes of hash over the coded sound after one byte for the kind; empty when the file has none.
std::string soundPrint(int file, std::string_view container);

} // namespace velmora::media
