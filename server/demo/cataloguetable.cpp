#include "cataloguetable.h"

#include <string_view>

namespace velmora::demo {
namespace {

struct Album {
    const char *artist, *title;
    int year;
};

enum AlbumIndex {
    RoomsWithSnow,
    LettersKept,
    TheLongCorridor,
    FerryTimes,
    BramblesAndBread,
    HandsOfTheHill,
    SwitchedOn,
    NightTimetable,
    GlassTides,
    SlowSignals,
    TeaspoonMusic,
    CafeZarovka,
    LateTables,
    RedGate,
    LongWayHome,
    Machines,
};

// In the order of the enumeration; the index is also the album's picture.
constexpr Album albums[] = {
    {"Elin Marrow", "Rooms With Snow", 2014},
    {"Elin Marrow", "Letters Kept in a Drawer", 2019},
    {"Anders Quill", "The Long Corridor", 2011},
    {"The Thistle Ferry", "Ferry Times", 2009},
    {"The Thistle Ferry", "Brambles and Bread", 2016},
    {"Wren & Barrow", "Hands of the Hill", 2021},
    {"Kilowatt Garden", "Switched On at Dusk", 2018},
    {"Neon Almanac", "Night Timetable", 2023},
    {"Harbour of Glass", "Glass Tides", 2013},
    {"The Sleeping Antennas", "Slow Signals", 2020},
    {"The Teaspoon Five", "Teaspoon Music", 2006},
    {"Kvartet Žárovka", "Café Žárovka", 2012},
    {"The Teaspoon Five", "Late Tables", 2015},
    {"Red Gate Avenue", "Paint Still Wet", 2008},
    {"Idris Vale & the Harbour Lights", "Songs for the Long Way Home", 2017},
    {"Red Gate Avenue", "Quiet Machines", 2022},
};

struct Row {
    const char *id, *song;
    AlbumIndex album;
    const char *mood;
    Piece piece;
};

using enum Style;
using enum Mode;

// Chords are relative to the major scale, whatever the mode.
constexpr Row rows[] = {
    {"piano-01",
     "First Light on the Banister",
     RoomsWithSnow,
     "calm",
     {SlowPiano, 1103, 0, 2, Major, 66, 4, "I2 A8 B4 A8 E2", "Iadd9 V/3 vi7 IV Iadd9 V/3 IVmaj7 Vsus4,V",
      "vi IVmaj7 I/3 V", "IVmaj7,V7sus4 Iadd9"}},
    {"piano-02",
     "The Clock Downstairs",
     RoomsWithSnow,
     "wistful",
     {SlowPiano, 1217, 1, 9, Minor, 96, 3, "I4 A16 B8 A8 E4",
      "i iv bVII bIIImaj7 bVImaj7 iim7b5 V7 i i iv bVII bIII iv i/5 V7 i", "bIII bVII iv i bVImaj7 bIII/3 iim7b5 V7",
      "iv V7 i i"}},
    {"piano-03",
     "Unsent",
     LettersKept,
     "wistful",
     {SlowPiano, 1319, 2, 5, Major, 58, 4, "I2 A8 B4 A4 E2", "I iii7 IVmaj7 I/3 ii7 I/3,IV Vsus4 V",
      "vi iii IV I/3,V7/3", "iv6 I"}},
    {"piano-04",
     "Ink Drying on the Third Page",
     LettersKept,
     "dreamy",
     {SlowPiano, 1423, 3, 7, Lydian, 72, 4, "I2 A8 B4 A8 E2", "Imaj7 iii7 vi7 IImaj7", "vi9 II iii7 Imaj7",
      "II Imaj7"}},
    {"piano-05",
     "Corridor With One Lamp",
     TheLongCorridor,
     "calm",
     {SlowPiano, 1511, 4, 1, Minor, 60, 4, "I1 A8 B4 A6 E2", "i bVI/3 iv V7 i bIII bVImaj7 V7sus4,V7",
      "bVImaj7 bVII bIII iv,V7", "ivadd9 i"}},

    {"folk-01",
     "Paper Boats",
     FerryTimes,
     "warm",
     {Folk, 2111, 0, 7, Major, 96, 4, "I4 A8 B8 A8 E2", "I V/3 vi IV I V IV,V I", "vi IV I V vi IV ii V", "IV I"}},
    {"folk-02",
     "Everyone Bring a Chair",
     FerryTimes,
     "bright",
     {Folk, 2203, 1, 2, Mixolydian, 112, 4, "I4 A8 A8 B8 A8 E2", "I bVII IV I I bVII IV,V I",
      "IV I bVII I IV I V7sus4 V7", "bVII,IV I"}},
    {"folk-03",
     "Three Miles of Hawthorn",
     BramblesAndBread,
     "wistful",
     {Folk, 2311, 2, 4, Minor, 108, 3, "I4 A16 B16 A8 E4", "i i bVII i bIII bVII i v i i bVII i bVI bVII i i",
      "bIII bVII i i bVI bIII iv V7", "bVI bVII i i"}},
    {"folk-04",
     "The Baker's Goat Has Got Out Again",
     BramblesAndBread,
     "bright",
     {Folk, 2411, 3, 9, Dorian, 104, 4, "I4 A8 B8 A8 E2", "i bVII i bVII,i i IV bVII i",
      "bIII bVII i IV bIII bVII IV,v i", "bVII i"}},
    {"folk-05",
     "Sjö í Þoku",
     HandsOfTheHill,
     "calm",
     {Folk, 2503, 4, 0, Major, 80, 4, "I2 A8 B8 A8 E2", "Iadd9 iii7 IVmaj7 V7sus4,V Iadd9 vi7 ii7 V7",
      "vi7 iii7 IVmaj7 I/3 ii7 vi7 IV V7sus4,V7", "iv6 Iadd9"}},

    {"dance-01",
     "Everything the Streetlights Know",
     SwitchedOn,
     "driving",
     {Dance, 3109, 0, 9, Minor, 122, 4, "I8 A8 B8 C8 A8 E4", "i7 bVImaj7 bIIImaj7 bVII", "bVImaj7 bVII v7 i7",
      "i7 bVImaj7 bVII i7"}},
    {"dance-02",
     "Ultraviolet Orchard",
     SwitchedOn,
     "bright",
     {Dance, 3203, 1, 5, Major, 132, 4, "I8 A8 B8 C8 A8 E4", "vi IV I V", "IV vi ii V", "vi IV V I"}},
    {"dance-03",
     "Glasshouse",
     SwitchedOn,
     "dreamy",
     {Dance, 3301, 2, 1, Dorian, 100, 4, "I4 A8 B8 C8 E4", "i7 IV bVIImaj7 i7", "bIIImaj7 IV v7 bVIImaj7",
      "i7 IV bVIImaj7 i7"}},
    {"dance-04",
     "Last Tram, Empty Carriage",
     NightTimetable,
     "warm",
     {Dance, 3407, 3, 10, Minor, 118, 4, "I4 A8 A8 B4 C8 E4", "i9 iv9 bVImaj7 v7", "bIIImaj7 bVImaj7 iv9 V7",
      "i9 iv9 bVImaj7 i9"}},
    {"dance-05",
     "Platform Zero",
     NightTimetable,
     "driving",
     {Dance, 3511, 4, 4, Minor, 128, 4, "I4 A8 A8 B8 C8 E4", "i i bVI bVII", "bVI bVII i bIII", "i i bVII i"}},

    {"drone-01",
     "Low Tide",
     GlassTides,
     "calm",
     {Drones, 4111, 0, 2, Major, 60, 8, "I1 A4 B4 E1", "Iadd9 IVmaj7 vi7 IVmaj7", "ii7 IVmaj7 vi7 V7sus4", "Iadd9"}},
    {"drone-02",
     "A Field With Wires",
     GlassTides,
     "wistful",
     {Drones, 4219, 1, 9, Minor, 58, 8, "I1 A4 B4 E1", "i bVImaj7 ivadd9 bVII", "bVImaj7 bIIImaj7 iv v", "i"}},
    {"drone-03",
     "The Choir That Practises Under the Bridge",
     GlassTides,
     "dreamy",
     {Drones, 4327, 2, 7, Dorian, 64, 8, "I1 A4 B4 E1", "i IV i bVIImaj7", "bIIImaj7 IV v7 IV", "iadd9"}},
    {"drone-04",
     "Seven Bowls on a Cold Floor",
     SlowSignals,
     "calm",
     {Drones, 4409, 3, 0, Lydian, 54, 8, "I1 A4 B3 E1", "Isus2 Imaj7 II Imaj7", "vi7 II Imaj7", "Isus2"}},
    {"drone-05",
     "Hours of Amber",
     SlowSignals,
     "dreamy",
     {Drones, 4513, 4, 4, Major, 66, 8, "I1 A4 B4 E1", "Imaj9 vi9 IVmaj9 I/3", "iii7 vi9 ii9 V7sus4", "Iadd9"}},

    {"swing-01",
     "Marigold Street",
     TeaspoonMusic,
     "bright",
     {Swing, 5101, 0, 5, Major, 138, 4, "I4 A8 B8 C8 A8 E4",
      "I6,vi7 ii7,V7 iii7,VI7 ii7,V7 Imaj7,I7 IVmaj7,iv6 iii7,VI7 ii7,V7", "III7 III7 VI7 VI7 II7 II7 ii7 V7",
      "ii7 V7 iii7,VI7b9 I69"}},
    {"swing-02",
     "Umbrella Weather Blues",
     TeaspoonMusic,
     "wistful",
     {Swing, 5209, 1, 0, Minor, 120, 4, "I4 A12 C12 E4", "i7 iv7 i7 i7 iv7 iv7 i7 i7 bVI7 V7 i7 iim7b5,V7",
      "iv7 i7 iim7b5 V7", "bVI7 V7b9 i7,iv7 i6"}},
    {"swing-03",
     "Crème Brûlée at Midnight",
     CafeZarovka,
     "warm",
     {Swing, 5303, 2, 10, Major, 150, 3, "I8 A16 B16 A16 E4",
      "Imaj7 vi7 ii7 V7 Imaj7 vi7 ii7 V7 v7 I7 IVmaj7 iv6 iii7 VI7b9 ii7 V7", "IVmaj7 IVmaj7 iii7 VI7 ii7 V7 Imaj7 I7",
      "ii7 V7 Imaj9 I69"}},
    {"swing-04",
     "Niño del Farol",
     CafeZarovka,
     "dreamy",
     {Swing, 5407, 3, 2, Minor, 126, 4, "I4 A8 B8 C8 A8 E4", "i9 i9 iim7b5 V7b9 i9 iv9 iim7b5,V7b9 i9",
      "iv9 bVII9 bIIImaj7 bVImaj7 iim7b5 V7b9 i9 VI7b9", "iv9 iim7b5,V7b9 i9 i6"}},
    {"swing-05",
     "Chairs on the Tables",
     LateTables,
     "calm",
     {Swing, 5501, 4, 3, Major, 72, 4, "I2 A8 B4 A8 E2",
      "Imaj7,vi7 ii7,V7 iii7,bIIImaj7 ii7,V7 v7,I7 IVmaj7,iv6 iii7,VI7b9 ii7,V7", "iv7,bVII7 Imaj7,vi7 II7 ii7,V7",
      "ii7,V7b9 Imaj9"}},

    {"rock-01",
     "North of Nowhere",
     RedGate,
     "driving",
     {Rock, 6113, 0, 4, Minor, 144, 4, "I4 A8 B8 A8 B8 C8 E2", "i i bVI bVII i i bIII bVII",
      "bVI bVII i bIII bVI bVII i i", "bVI,bVII i"}},
    {"rock-02",
     "The Weight of Small Keys",
     RedGate,
     "wistful",
     {Rock, 6203, 1, 2, Minor, 92, 4, "I2 A8 B8 C8 E2", "i bIII iv bVI i bIII bVII bVI",
      "bVI bIII bVII i bVI bIII bVII iv", "bVII i"}},
    {"rock-03",
     "Salt and Lanterns",
     LongWayHome,
     "bright",
     {Rock, 6311, 2, 9, Major, 120, 4, "I4 A8 B8 A8 C8 E2", "I iii IV V I vi IV V", "vi IV I V ii IV V V", "IV I"}},
    {"rock-04",
     "Everything We Left Behind on the Last Train Out of the Valley Before the Snow",
     LongWayHome,
     "warm",
     {Rock, 6427, 3, 9, Mixolydian, 128, 4, "I4 A12 C12 B8 E2", "I I I I IV IV I I V IV I V", "IV IV I I bVII IV I V",
      "IV I"}},
    {"rock-05",
     "Quiet Machines",
     Machines,
     "driving",
     {Rock, 6529, 4, 7, Major, 104, 4, "I4 A8 B8 C8 B4 E2", "I V/3 vi IV I V/3 IV IV", "IV I V vi IV I V V", "IV,V I"}},
};

constexpr std::string_view styleName(Style style)
{
    switch (style) {
    case SlowPiano:
        return "Slow Piano";
    case Folk:
        return "Acoustic Folk";
    case Dance:
        return "Electronic Dance";
    case Drones:
        return "Ambient Drones";
    case Swing:
        return "Small-Band Swing";
    case Rock:
        break;
    }
    return "Guitar Rock";
}

std::vector<TrackEntry> makeTrackEntries()
{
    std::vector<TrackEntry> entries;
    for (const Row &row : rows) {
        const Album &album = albums[row.album];
        DemoTrack track{row.id,
                        row.song,
                        album.artist,
                        album.title,
                        std::string(styleName(row.piece.style)),
                        row.mood,
                        album.year,
                        row.piece.tempo,
                        durationSeconds(row.piece)};
        entries.push_back({std::move(track), row.piece, row.album});
    }
    return entries;
}

std::vector<AdEntry> makeAdEntries()
{
    struct AdRow {
        const char *id, *title, *line2;
        Jingle jingle;
    };
    // Degrees of the scale, one an eighth: '1' to '7', an apostrophe after it an octave up, a comma an octave down; '-'
    // holds, '.' rests.
    static const AdRow ads[] = {
        {"ad-bakery",
         "Crumb & Corner",
         "Bread from five in the morning, on Mill Lane",
         {Voice::Marimba, 7101, 0, Major, 132,
          "5 1' . 5 3' - 1' . 2' 1' 6 . 5 - - . 5 1' . 5 3' - 2' . 1' - - - - - - -", "I IV ii V I V I I"}},
        {"ad-library",
         "Fern Street Library",
         "Open until nine, and always a warm chair",
         {Voice::Piano, 7203, 5, Major, 92, "3 5 1' - 7 5 6 - 4 6 1' - 5 - - -", "Iadd9 IVmaj7 ii7 V7sus4"}},
        {"ad-bicycles",
         "Spoke & Ladder",
         "Bicycles mended while you wait",
         {Voice::Whistle, 7307, 7, Major, 144, "1 3 5 3 6 5 3 . 1 3 5 6 1' - - - 6 1' 6 5 3 5 2 . 1 3 2 . 1 - - -",
          "I IV I V IV I V I"}},
        {"ad-teahouse",
         "The Blue Kettle",
         "Forty teas, one long table",
         {Voice::Harp, 7411, 2, Major, 84, "5 6 1' - 3' 2' 1' - 6 5 3 - 5 - - -", "I6 vi7 IVmaj7 Iadd9"}},
        {"ad-ferry",
         "Larkmere Ferry",
         "Across the lake every half hour, dogs travel free",
         {Voice::Accordion, 7517, 10, Major, 116,
          "5 . 3' - 2' 1' 6 - 5 . 1' - 2' - - . 5 . 3' - 4' 3' 2' - 7 . 2' - 1' - - -", "I IV I V I IV V I"}},
        {"ad-observatory",
         "Hollow Hill Observatory",
         "Bring a coat, we bring the stars",
         {Voice::Bell, 7603, 9, Lydian, 76, "1' 5 7 3' - 2' 7 - 5 2' 1' - - - - -", "Imaj7 II Imaj7 Isus2"}},
    };
    std::vector<AdEntry> entries;
    for (const AdRow &row : ads)
        entries.push_back({{row.id, row.title, row.line2, durationSeconds(row.jingle)}, row.jingle});
    return entries;
}

} // namespace

const std::vector<TrackEntry> &trackEntries()
{
    static const std::vector<TrackEntry> entries = makeTrackEntries();
    return entries;
}

const std::vector<AdEntry> &adEntries()
{
    static const std::vector<AdEntry> entries = makeAdEntries();
    return entries;
}

} // namespace velmora::demo
