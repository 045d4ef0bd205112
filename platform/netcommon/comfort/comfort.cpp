#include "comfort.h"

#include "keygate.h"
#include "language.h"
#include "mpris.h"
#include "netcommon/playback.h"
#include "nowplaying.h"
#include "platform/netcommon/device/ceclink.h"
#include "platform/netcommon/playback/playbackboard.h"
#include "platform/netcommon/playback/playbackstatistics.h"
#include "platform/shared/devicesettings.h"
#include "platform/shared/windowstack.h"
#include "speech.h"
#include "volumebar.h"

#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>

#include <chrono>

namespace netcommon {

namespace {

constexpr char volumeKey[] = "sound/volume";
constexpr int keepMs = 1000; // after the last step
constexpr QSize canvasSize(1280, 720);

// The uppermost window that fills the canvas; null: none.
QWidget *topScreen()
{
    const auto windows = platform::WindowStack::instance().bottomToTop();
    QWidget *screen = nullptr;
    for (QWidget *window : windows)
        if (window->width() >= canvasSize.width() && window->height() >= canvasSize.height())
            screen = window;
    return screen;
}

// Empty without a menu system.
QString sleepFile()
{
    const QString socket = qEnvironmentVariable(menu::socketVariable);
    return socket.isEmpty() ? QString() : socket + QStringLiteral(".sleep");
}

QPointer<Comfort> comfort; // programs with one application object after the other make one each

} // namespace

Comfort *Comfort::instance()
{
    return comfort;
}

void Comfort::install(QApplication *application)
{
    comfort = new Comfort(application);
}

Comfort::Comfort(QApplication *application)
    : QObject(application)
    , m_volume(PlaybackBoard::instance().sound(), this)
    , m_saver(
          [] {
              using namespace std::chrono;
              return qint64(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
          },
          this)
    , m_sleep(PlaybackBoard::instance().sound(), sleepFile(), this)
{
    new KeyGate(application, [this](int pressed, bool isAutoRepeat) { return key(pressed, isAutoRepeat); });
    connect(&m_sleep, &SleepTimer::pauseWanted, this, [this] { press(Qt::Key_Pause); });
    connect(&m_sleep, &SleepTimer::asleep, &m_saver, &Saver::fallAsleep);
    m_saver.setSleepText([this] { return m_sleep.shortText(); });
    connect(&platform::WindowStack::instance(), &platform::WindowStack::changed, this, &Comfort::windowsChanged);
    connect(&m_volume, &VolumeControl::touched, this, &Comfort::showVolume);
    connect(&m_volume, &VolumeControl::touched, &m_keepVolume, [this] { m_keepVolume.start(); });
    m_keepVolume.setSingleShot(true);
    m_keepVolume.setInterval(keepMs);
    connect(&m_keepVolume, &QTimer::timeout, this, &Comfort::keepVolume);
    QMetaObject::invokeMethod(this, &Comfort::readSettings, Qt::QueuedConnection);
    QMetaObject::invokeMethod(this, &Comfort::findTelevision, Qt::QueuedConnection);
}

Comfort::~Comfort()
{
    if (m_keepVolume.isActive())
        keepVolume();
}

// After the first picture has been prepared, and before a track can play.
void Comfort::readSettings()
{
    m_settings = std::make_unique<platform::DeviceSettingsWatch>();
    connect(m_settings.get(), &platform::DeviceSettingsWatch::changed, this, &Comfort::applySettings);
    applySettings();
}

void Comfort::applySettings()
{
    const platform::DeviceSettings &settings = m_settings->settings();
    if (Language *const language = Language::instance())
        language->choose(settings.value("language/locale").toString());
    PlaybackBoard::instance().sound().isLevelled = settings.value("sound/level-tracks").toBool();
    m_saver.setMinutes(settings.value("screen/saver-minutes").toInt());
    if (const bool clicks = settings.value("sound/key-clicks").toBool(); clicks != (m_click != nullptr))
        m_click = clicks ? std::make_unique<KeyClick>() : nullptr;
    if (const bool isSpoken = settings.value("speech/enabled").toBool(); isSpoken != (m_speech != nullptr))
        m_speech = isSpoken ? std::make_unique<SpokenFocus>(SpokenFocus::speak, nullptr) : nullptr;
    // What a person has just set is not in the file yet.
    if (const int volume = settings.value(volumeKey).toInt(); !m_keepVolume.isActive() && volume != m_volume.percent())
        m_volume.restore(volume);
}

// A television belongs to a radio that has the screen for itself. When one of them goes to sleep, so does the other.
void Comfort::findTelevision()
{
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal") ||
        qEnvironmentVariableIntValue("VELMORA_WINDOWED") == 1)
        return;
    m_television = CecLink::open();
    if (!m_television)
        return;
    connect(&m_sleep, &SleepTimer::asleep, m_television.get(), &CecLink::standby);
    connect(m_television.get(), &CecLink::televisionSleeps, this, [this] {
        if (statistics::playbackState() == PLAYBACK_STATE_PLAYING)
            press(Qt::Key_Pause);
        m_saver.fallAsleep();
    });
}

void Comfort::keepVolume()
{
    QString reason;
    if (!m_settings || !m_settings->set(QLatin1String(volumeKey), QString::number(m_volume.percent()), &reason))
        qWarning("Comfort,volume,not stored: %s", qPrintable(reason));
}

bool Comfort::key(int key, bool isAutoRepeat)
{
    if (m_click && key != 0 && !isAutoRepeat)
        m_click->play();
    if (m_saver.keyPressed())
        return true;
    switch (key) {
    case Qt::Key_VolumeUp:
        m_volume.raise();
        return true;
    case Qt::Key_VolumeDown:
        m_volume.lower();
        return true;
    case Qt::Key_VolumeMute:
        m_volume.toggleMute();
        return true;
    default:
        return false;
    }
}

QByteArray Comfort::volume(menu::VolumeOrder order, std::uint32_t percent)
{
    using menu::VolumeOrder;
    switch (order) {
    case VolumeOrder::Set:
        m_volume.set(int(std::min(percent, 100u)));
        break;
    case VolumeOrder::Up:
        m_volume.raise();
        break;
    case VolumeOrder::Down:
        m_volume.lower();
        break;
    case VolumeOrder::ToggleMute:
        m_volume.toggleMute();
        break;
    case VolumeOrder::Tell:
        break;
    }
    return QByteArray::number(m_volume.percent()) + (m_volume.isMuted() ? " muted" : "");
}

QByteArray Comfort::sleep(menu::SleepOrder order, std::uint32_t minutes)
{
    using menu::SleepOrder;
    switch (order) {
    case SleepOrder::Minutes:
        m_sleep.start(int(std::clamp(minutes, menu::leastSleepMinutes, menu::mostSleepMinutes)));
        break;
    case SleepOrder::Track:
        m_sleep.afterTrack();
        break;
    case SleepOrder::Off:
        m_sleep.off();
        break;
    case SleepOrder::Tell:
        break;
    }
    return m_sleep.text().toUtf8();
}

void Comfort::describe(QJsonObject &status) const
{
    status[QStringLiteral("volume")] = m_volume.percent();
    status[QStringLiteral("muted")] = m_volume.isMuted();
    status[QStringLiteral("sleep")] = m_sleep.text();
    status[QStringLiteral("saver")] = m_saver.isShown();
}

// As if a key of the remote had been pressed, so that the screen knows. It goes to the playing screen even under the
// idle picture.
void Comfort::press(int key)
{
    const QPointer<QWidget> screen = topScreen();
    if (!isPlayingScreen(screen))
        return;
    m_saver.behind([&] {
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier);
            if (screen)
                QCoreApplication::sendEvent(screen, &event);
        }
    });
}

// Desktops see a radio as soon as there is something to play.
void Comfort::windowsChanged()
{
    if (!m_isTrackTimed && playingScreen())
        timeTracks();
    if (m_mpris || !Mpris::hasBus() || !playingScreen())
        return;
    const auto shown = [] {
        const QWidget *const screen = playingScreen();
        return screen ? nowPlaying(screen) : NowPlaying();
    };
    m_mpris = new Mpris({m_volume, shown, [this](int key) { press(key); }}, this);
}

void Comfort::timeTracks()
{
    m_isTrackTimed = true;
    const Playback *const playback = Playback::getInstance();
    connect(playback, &Playback::signalPlayURLOK, this, [this] { m_trackSeconds = 0; });
    connect(playback, &Playback::signalNotifyTotalTime, this,
            [this](int hours, int minutes, int seconds) { m_trackSeconds = hours * 3600 + minutes * 60 + seconds; });
}

QByteArray Comfort::shownToPhones()
{
    QJsonObject shown;
    describe(shown);
    shown.remove(QStringLiteral("saver"));
    m_phones.describe(shown, m_trackSeconds);
    return QJsonDocument(shown).toJson(QJsonDocument::Compact);
}

PhoneView &Comfort::phones()
{
    endIdlePicture();
    return m_phones;
}

void Comfort::showVolume()
{
    QWidget *const screen = topScreen();
    if (!screen)
        return;
    if (!m_bar || m_bar->parentWidget() != screen) {
        delete m_bar;
        m_bar = new VolumeBar(screen);
    }
    m_bar->showVolume(m_volume.percent(), m_volume.isMuted());
}

} // namespace netcommon
