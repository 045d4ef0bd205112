#pragma once

#include <vector>

namespace netcommon {

// One thing to report to the screens.
struct PlaybackReport {
    enum class Kind { UrlOk, Result, PlayOk, PauseOk, TotalTime, CurrentTime, Progress, BufferLow, FileEof, NextSong };
    Kind kind;
    int value = 0; // Result: its code; times: seconds; Progress: percent; BufferLow: 0 or 1
    bool operator==(const PlaybackReport &) const = default;
};

// The reports of one address. Facts come in as they happen, in any order and any number of times; reports come out once
// each, in the order that the screens rely on:
//
//   UrlOk, Result, then only after a result >= 0: PlayOk or PauseOk, TotalTime, ..., FileEof, NextSong
//
// The order matters. A result without UrlOk is ignored by the player screen, which would then wait for ever; the result
// makes it forget the total time and show the pause picture, so both are reported afterwards; a NextSong that came
// before FileEof would be forgotten too; a second Result -1 would skip the following track. No threads, no clock.
class PlaybackOrder {
public:
    // The address was taken. Always the first report, even if the address cannot be played.
    void taken();
    void ready(); // it can be heard from now on
    // -1: this address cannot be played; -2: nothing can be played. Before the result it is the result. Later it ends
    // the track: the only case of two results for one address.
    void failed(int code);
    void wantPlay(bool wantsPlay);
    void totalKnown(int seconds);
    void position(int seconds);
    void buffered(int ms);
    void received(); // all bytes are here
    void endsSoon(); // of a received track: time to ask for the next one
    void ended();    // the last sample was heard

    std::vector<PlaybackReport> take();

    int state() const; // 4, 5, 6
    bool isStarting() const { return m_phase == Phase::Starting; }
    bool isPlaying() const
    {
        return m_phase == Phase::Playing;
    } // also while paused: the result was >= 0 and it goes on
    bool hasAskedForNext() const { return m_hasAskedForNext; }
    bool wantsPlay() const { return m_wantsPlay; }
    int total() const { return m_total; } // seconds as reported; -1 unknown

private:
    enum class Phase { Idle, Starting, Playing, Over };
    void report(PlaybackReport::Kind kind, int value = 0) { m_reports.push_back({kind, value}); }
    void reportEof();
    void askForNext();

    Phase m_phase = Phase::Idle;
    bool m_wantsPlay = true;
    bool m_isReceived = false;
    bool m_isEofReported = false;
    bool m_hasAskedForNext = false;
    bool m_isLow = false; // as reported
    bool m_hasBeenHigh = false;
    int m_total = -1;
    int m_second = -1;
    int m_percent = -1;
    std::vector<PlaybackReport> m_reports;
};

} // namespace netcommon
