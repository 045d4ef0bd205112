#pragma once

#include "server/media/descriptorlayout.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace bench {

// A piece of the demo synthesiser with a seed that the catalogue does not use, and how it sounds.
struct StationPiece {
    int style = 0;   // 0 to 5
    int texture = 0; // 0 to 4 within the style
    int artist = 0;
    int album = 0;
    int copyOf = -1; // index of the piece that this is a re-encoded copy of
    velmora::media::Descriptor descriptor{};
};

constexpr int styleCount = 6;
constexpr int texturesAStyle = 5;

struct PieceSettings {
    uint64_t seed = 1;
    int artistsAStyle = 8;
    int albumsAnArtist = 2;
    int piecesAnAlbum = 3;
    int copies = 0; // re-encoded copies of the first pieces
    int threads = 1;
};

// Composes, plays, masters, encodes, decodes, describes. Every album has its own equaliser, loudness and room; three
// quarters of the pieces go through MP3 or Opus. Seconds a piece.
std::vector<StationPiece> makePieces(const PieceSettings &settings);

// A file of them, and back. Throw std::runtime_error.
void writePieces(const std::vector<StationPiece> &pieces, const std::filesystem::path &file);
std::vector<StationPiece> readPieces(const std::filesystem::path &file);

} // namespace bench
