#pragma once

#include <filesystem>
#include <string>
#include <vector>

// The demo catalogue: original music, audio advertisements and pictures, all made by the program itself.
//
// Every file is a pure function of its entry: rendering it again with the same build gives the same bytes. All
// functions may be called from any thread at the same time, also for the same entry. Texts are UTF-8.
namespace velmora::demo {

struct DemoTrack {
    std::string id; // ASCII letters, digits and '-'; unique over tracks and advertisements, and never changed
    std::string song;
    std::string artist;
    std::string album;
    std::string style; // one of six
    std::string mood;
    int number = 0; // on its album, from 1
    int year = 0;
    int tempo = 0;           // beats a minute, as it is played
    int durationSeconds = 0; // exact length of the rendered file: 60 to 100
};

struct DemoAd {
    std::string id;
    std::string title;
    std::string line2;
    int durationSeconds = 0; // exact length of the rendered file: 5 to 12
};

// In catalogue order; tracks of one style follow each other. Valid for the life of the program.
const std::vector<DemoTrack> &tracks();
const std::vector<DemoAd> &ads();

// At most so many tracks of each style, in an order whose first few tracks already make good stations: styles
// alternate, and within a style the artists do.
std::vector<DemoTrack> tracksInTurn(int mostOfStyle);

// Writes FLAC: 44.1 kHz, stereo, 16 bits, total length and checksum in its header. The entry must be one of tracks()
// (found by its id). The file appears whole or not at all: it is written beside its place and renamed, replacing an
// older one. False when the id is unknown or the file cannot be written; nothing is left behind then.
bool renderTrack(const DemoTrack &track, const std::filesystem::path &flacFile);
bool renderAd(const DemoAd &ad, const std::filesystem::path &flacFile);

// Writes the picture of a track or an advertisement as PNG, 480 x 480. Tracks of one album have the same picture.
// Fails as above.
bool renderPicture(const std::string &id, const std::filesystem::path &pngFile);

} // namespace velmora::demo
