#include "volumecontrol.h"

#include "platform/netcommon/playback/playbacksound.h"

#include <algorithm>

namespace netcommon {

namespace {
constexpr int step = 5;
} // namespace

VolumeControl::VolumeControl(PlaybackSound &sound, QObject *parent)
    : QObject(parent)
    , m_sound(sound)
{
}

void VolumeControl::restore(int percent)
{
    m_percent = std::clamp(percent, 0, 100);
    apply();
}

void VolumeControl::set(int percent)
{
    m_isMuted = false;
    m_sound.isVolumeChosen = true;
    restore(percent);
    emit touched();
}

void VolumeControl::raise()
{
    set((m_percent / step + 1) * step);
}

void VolumeControl::lower()
{
    set(((m_percent + step - 1) / step - 1) * step);
}

void VolumeControl::toggleMute()
{
    m_isMuted = !m_isMuted;
    apply();
    emit touched();
}

void VolumeControl::apply()
{
    if (m_percent < 100 || m_isMuted)
        m_sound.isVolumeChosen = true;
    m_sound.volume = m_percent;
    m_sound.isMuted = m_isMuted;
}

} // namespace netcommon
