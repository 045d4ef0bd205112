#pragma once

#include <QObject>

namespace netcommon {

struct PlaybackSound;

// The volume as a person sets it, in percent and in steps of five. GUI thread.
class VolumeControl : public QObject {
    Q_OBJECT
public:
    // sound: what the playback thread obeys; lives longer.
    VolumeControl(PlaybackSound &sound, QObject *parent);

    int percent() const { return m_percent; }
    bool isMuted() const { return m_isMuted; }
    // As the settings say it; nobody has touched the volume. 0 to 100.
    void restore(int percent);
    // All of these end a mute.
    void set(int percent); // limited to 0 to 100
    void raise();
    void lower();
    // Mutes, or ends it.
    void toggleMute();

signals:
    void touched(); // by a person, even if that changed nothing

private:
    void apply();

    PlaybackSound &m_sound;
    int m_percent = 100;
    bool m_isMuted = false;
};

} // namespace netcommon
