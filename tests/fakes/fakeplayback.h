#pragma once

#include "netcommon/netcommon_global.h"

#include <QByteArray>
#include <QList>
#include <QStringList>

// Drives the fakes of netcommon::Playback and netcommon::PlaybackThread. GUI thread only. Nothing is played: the test
// says what happens, in the order of the contract.
class FakePlayback {
public:
    static void reset(); // state 4, empty buffer, no commands recorded

    // --- what the radio asked for, in order: "type 1", "url http://...", ...
    static QStringList commands;
    static QList<int> types;
    static QList<QByteArray> urls; // addresses that were taken
    static QByteArray lastUrl() { return urls.isEmpty() ? QByteArray() : urls.last(); }
    static void clearCommands();
    static int livingThreads;      // PlaybackThread objects
    static QStringList violations; // an address without PLAYBACK_TYPE_START, a thread deleted before its end

    // --- what the radio reads. Pause, resume and stop change the state at once and are reported by queued signals.
    static int state;
    static void setBuffer(quint32 startMs, quint32 endMs);
    // Every address plays by itself: playOk(autoPlaySeconds), queued. 0, the default: the test calls playOk().
    static int autoPlaySeconds;

    // --- what is reported, at once
    static void playOk(int totalSeconds);         // address taken, result 0, playing, total time
    static void playFailed(int result = -1);      // address taken, then the result
    static void playRefused(int result = -1);     // the result without "address taken"
    static void progress(int seconds, int total); // current time and percent
    static void finished();                       // state 4, everything was received, then the next-song signal
};
