#pragma once

#include "keyclick.h"
#include "phoneview.h"
#include "platform/netcommon/device/menumessages.h"
#include "saver.h"
#include "sleeptimer.h"
#include "volumecontrol.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>

class QApplication;
class QJsonObject;
class QWidget;

namespace platform {
class DeviceSettingsWatch;
}

namespace netcommon {

class CecLink;
class Mpris;
class SpokenFocus;
class VolumeBar;

// What makes listening comfortable and is no business of the screens. It is installed by the library itself when the
// application object is made, and lives as long as that. GUI thread only.
class Comfort : public QObject {
    Q_OBJECT
public:
    // Null in a program without widgets.
    static Comfort *instance();
    // Before the filter that translates the keys of a PC.
    static void install(QApplication *application);

    // A request of the menu system: the volume in percent, or what else to do with it. Returns what `velmora-menu
    // volume` prints.
    QByteArray volume(menu::VolumeOrder order, std::uint32_t percent);
    // The same for `velmora-menu sleep`.
    QByteArray sleep(menu::SleepOrder order, std::uint32_t minutes);
    // What a telephone shows of the radio, as JSON.
    QByteArray shownToPhones();
    // What only telephones do. Each ends the idle picture first.
    PhoneView &phones();
    void endIdlePicture() { m_saver.keyPressed(); }
    // The idle picture covers the screens, and the next key only lifts it.
    bool hidesScreens() const { return m_saver.isShown(); }
    // Adds its members to what `velmora-menu status` says.
    void describe(QJsonObject &status) const;

    ~Comfort() override;

private:
    explicit Comfort(QApplication *application);

    bool key(int key, bool isAutoRepeat);
    void showVolume();
    void readSettings();
    void applySettings();
    void keepVolume();
    void findTelevision();
    void windowsChanged();
    void press(int key);
    void timeTracks();

    std::unique_ptr<platform::DeviceSettingsWatch> m_settings; // from the first turn of the event loop
    QTimer m_keepVolume;                                       // runs while the volume was touched and is not stored
    VolumeControl m_volume;
    Saver m_saver;
    PhoneView m_phones;
    int m_trackSeconds = 0;      // of the track that plays; 0: not known
    bool m_isTrackTimed = false; // m_trackSeconds follows the playback
    SleepTimer m_sleep;
    std::unique_ptr<KeyClick> m_click;     // null: keys do not click
    std::unique_ptr<SpokenFocus> m_speech; // null: nothing is spoken
    std::unique_ptr<CecLink> m_television; // null: none
    QPointer<Mpris> m_mpris;               // null: no playing screen yet, or no session bus
    QPointer<VolumeBar> m_bar;             // null: not made yet, or gone with its screen
};

} // namespace netcommon
