#pragma once

#include <QProcess>

namespace netcommon {

// A short click for each key, by aplay on ALSA's default device, beside the music. A click that comes while the one
// before still sounds is left out. GUI thread; never blocks.
class KeyClick {
public:
    void play();
    // What aplay gets: 16 bits, 48,000 Hz, one channel.
    static QByteArray samples();

private:
    QProcess m_player;
};

} // namespace netcommon
