#include "mpris.h"

#include "netcommon/playback.h"
#include "platform/netcommon/playback/playbackstatistics.h"
#include "volumecontrol.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDebug>
#include <QFileInfo>
#include <QUrl>

#include <unistd.h>

namespace netcommon {

namespace {

constexpr char objectPath[] = "/org/mpris/MediaPlayer2";
constexpr char serviceName[] = "org.mpris.MediaPlayer2.velmora";
constexpr char playerInterface[] = "org.mpris.MediaPlayer2.Player";
constexpr int coverMs = 2000; // until a cover has been downloaded
constexpr qlonglong usPerSecond = 1'000'000;

} // namespace

bool Mpris::hasBus()
{
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus"));
}

Mpris::Mpris(Radio radio, QObject *parent)
    : QObject(parent)
    , m_radio(std::move(radio))
{
    new MprisRoot(this);
    new MprisPlayer(this);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(QLatin1String(objectPath), this)) {
        qDebug("Mpris,register,%s", qPrintable(bus.lastError().message()));
        return;
    }
    // A second radio of the same person gets a name of its own.
    const QString name = QLatin1String(serviceName);
    for (const QString &wanted : {name, name + QStringLiteral(".instance%1").arg(::getpid())}) {
        if (bus.registerService(wanted)) {
            m_service = wanted;
            break;
        }
    }

    m_look.setSingleShot(true);
    m_lookLater.setSingleShot(true);
    connect(&m_look, &QTimer::timeout, this, &Mpris::look);
    connect(&m_lookLater, &QTimer::timeout, this, &Mpris::look);
    auto *const playback = Playback::getInstance();
    connect(playback, &Playback::signalPlayResult, this, &Mpris::lookSoon);
    connect(playback, &Playback::signalPlayOk, this, &Mpris::lookSoon);
    connect(playback, &Playback::signalPauseOk, this, &Mpris::lookSoon);
    connect(playback, &Playback::signalStopOk, this, &Mpris::lookSoon);
    connect(playback, &Playback::signalPlayURLOK, this, [this] { m_lengthUs = 0; });
    connect(playback, &Playback::signalNotifyTotalTime, this, [this](int hours, int minutes, int seconds) {
        m_lengthUs = (hours * 3600 + minutes * 60 + seconds) * usPerSecond;
        lookSoon();
    });
    connect(&m_radio.volume, &VolumeControl::touched, this, [this] {
        tell({{QStringLiteral("Volume"), m_radio.volume.percent() / 100.0}});
    });
    look();
}

Mpris::~Mpris()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!m_service.isEmpty())
        bus.unregisterService(m_service);
    bus.unregisterObject(QLatin1String(objectPath));
}

QString Mpris::status() const
{
    switch (statistics::playbackState()) {
    case PLAYBACK_STATE_PLAYING:
        return QStringLiteral("Playing");
    case PLAYBACK_STATE_PAUSED:
        return QStringLiteral("Paused");
    default:
        return QStringLiteral("Stopped");
    }
}

qlonglong Mpris::positionUs() const
{
    IMTK_PB_CTRL_BUFFER_STATUS_T buffer{};
    Playback::getInstance()->GetBufferStatus(&buffer);
    return qlonglong(buffer.ui4_start) * 1000;
}

// After the screen, which gets the same signal, has changed its texts.
void Mpris::lookSoon()
{
    m_look.start(0);
    m_lookLater.start(coverMs);
}

void Mpris::look()
{
    const NowPlaying track = m_radio.nowPlaying();
    if (track.title != m_track.title || track.artist != m_track.artist || track.album != m_track.album)
        ++m_trackNumber;
    m_track = track;
    QVariantMap metadata;
    if (!track.title.isEmpty()) {
        metadata[QStringLiteral("mpris:trackid")] =
            QVariant::fromValue(QDBusObjectPath(QStringLiteral("/velmora/track/%1").arg(m_trackNumber)));
        metadata[QStringLiteral("xesam:title")] = track.title;
        if (m_lengthUs > 0)
            metadata[QStringLiteral("mpris:length")] = m_lengthUs;
        if (!track.artist.isEmpty())
            metadata[QStringLiteral("xesam:artist")] = QStringList(track.artist);
        if (!track.album.isEmpty())
            metadata[QStringLiteral("xesam:album")] = track.album;
        if (!track.coverFile.isEmpty())
            metadata[QStringLiteral("mpris:artUrl")] =
                QString::fromLatin1(QUrl::fromLocalFile(track.coverFile).toEncoded());
    }
    QVariantMap changed;
    if (metadata != m_metadata)
        changed[QStringLiteral("Metadata")] = metadata;
    m_metadata = metadata;
    if (const QString now = status(); now != m_status)
        changed[QStringLiteral("PlaybackStatus")] = m_status = now;
    if (!changed.isEmpty())
        tell(changed);
}

void Mpris::tell(const QVariantMap &changed)
{
    QDBusMessage message =
        QDBusMessage::createSignal(QLatin1String(objectPath), QStringLiteral("org.freedesktop.DBus.Properties"),
                                   QStringLiteral("PropertiesChanged"));
    message << QString::fromLatin1(playerInterface) << changed << QStringList();
    QDBusConnection::sessionBus().send(message);
}

double MprisPlayer::volume() const
{
    const VolumeControl &volume = m_mpris.radio().volume;
    return volume.isMuted() ? 0 : volume.percent() / 100.0;
}

void MprisPlayer::setVolume(double volume)
{
    m_mpris.radio().volume.set(qRound(qBound(0.0, volume, 1.0) * 100));
}

void MprisPlayer::Next()
{
    m_mpris.radio().press(Qt::Key_MediaNext);
}

// One key pauses and goes on.
void MprisPlayer::PlayPause()
{
    m_mpris.radio().press(Qt::Key_Pause);
}

void MprisPlayer::Pause()
{
    if (statistics::playbackState() == PLAYBACK_STATE_PLAYING)
        PlayPause();
}

void MprisPlayer::Stop()
{
    Pause();
}

void MprisPlayer::Play()
{
    if (statistics::playbackState() != PLAYBACK_STATE_PLAYING)
        PlayPause();
}

} // namespace netcommon
