#pragma once

#include <filesystem>
#include <string>

// Music for the library to look through and listen to.
namespace bench {

// An MP3 file: ID3v2 tags and silent frames of 128 kb/s for about half a minute.
std::string taggedMp3(int number);

// Renders pieces with the demo's synthesiser and encodes each as FLAC, MP3, Ogg Vorbis and WAV; each file several
// times, with an end of its own. Returns false when that is not possible.
bool renderMusic(const std::filesystem::path &folder, int copies);

// Writes tracks of two tones each, 21 to 51 s, FLAC, twelve by each player. Returns false when the disk is full.
bool makeManyTracks(const std::filesystem::path &folder, int count);

} // namespace bench
