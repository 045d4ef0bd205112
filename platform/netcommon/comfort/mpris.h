#pragma once

#include "nowplaying.h"

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QStringList>
#include <QTimer>
#include <QVariantMap>

#include <functional>

namespace netcommon {

class VolumeControl;

// What desktops, telephones and media keys see of the radio: MPRIS 2 on the session bus. It shows what the playing
// screen shows and presses keys of the remote; it reaches no other part of the radio. GUI thread.
class Mpris : public QObject {
    Q_OBJECT
public:
    struct Radio {
        VolumeControl &volume;
        std::function<NowPlaying()> nowPlaying;
        std::function<void(int key)> press; // a key of the remote, for the playing screen
    };
    // Whether this process has a session bus; nothing is started for it.
    static bool hasBus();

    Mpris(Radio radio, QObject *parent);
    ~Mpris() override;

    Radio &radio() { return m_radio; }
    QString status() const;
    const QVariantMap &metadata() const { return m_metadata; }
    qlonglong positionUs() const;

private:
    void lookSoon();
    void look();
    void tell(const QVariantMap &changed);

    Radio m_radio;
    QTimer m_look;
    QTimer m_lookLater; // the cover arrives later
    QString m_service;  // the name on the bus; empty: none
    NowPlaying m_track;
    int m_trackNumber = 0;
    qlonglong m_lengthUs = 0; // 0: unknown
    QString m_status;
    QVariantMap m_metadata;
};

// org.mpris.MediaPlayer2
class MprisRoot : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ no CONSTANT)
    Q_PROPERTY(bool CanRaise READ no CONSTANT)
    Q_PROPERTY(bool HasTrackList READ no CONSTANT)
    Q_PROPERTY(QString Identity READ identity CONSTANT)
    Q_PROPERTY(QStringList SupportedUriSchemes READ none CONSTANT)
    Q_PROPERTY(QStringList SupportedMimeTypes READ none CONSTANT)
public:
    explicit MprisRoot(Mpris *mpris)
        : QDBusAbstractAdaptor(mpris)
    {
    }
    bool no() const { return false; }
    QString identity() const { return QStringLiteral("Velmora"); }
    QStringList none() const { return {}; }

public slots:
    void Raise() {}
    void Quit() {}
};

// org.mpris.MediaPlayer2.Player
class MprisPlayer : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(double Rate READ one WRITE setRate)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(double MinimumRate READ one CONSTANT)
    Q_PROPERTY(double MaximumRate READ one CONSTANT)
    Q_PROPERTY(bool CanGoNext READ yes CONSTANT)
    Q_PROPERTY(bool CanGoPrevious READ no CONSTANT)
    Q_PROPERTY(bool CanPlay READ yes CONSTANT)
    Q_PROPERTY(bool CanPause READ yes CONSTANT)
    Q_PROPERTY(bool CanSeek READ no CONSTANT)
    Q_PROPERTY(bool CanControl READ yes CONSTANT)
public:
    explicit MprisPlayer(Mpris *mpris)
        : QDBusAbstractAdaptor(mpris)
        , m_mpris(*mpris)
    {
    }
    bool no() const { return false; }
    bool yes() const { return true; }
    double one() const { return 1; }
    void setRate(double) {} // music plays at its own speed
    QString playbackStatus() const { return m_mpris.status(); }
    QVariantMap metadata() const { return m_mpris.metadata(); }
    double volume() const;
    void setVolume(double volume);
    qlonglong position() const { return m_mpris.positionUs(); }

public slots:
    void Next();
    void Previous() {}
    void Pause();
    void PlayPause();
    void Stop();
    void Play();
    void Seek(qlonglong) {}
    void SetPosition(const QDBusObjectPath &, qlonglong) {}
    void OpenUri(const QString &) {}

signals:
    void Seeked(qlonglong position);

private:
    Mpris &m_mpris;
};

} // namespace netcommon
