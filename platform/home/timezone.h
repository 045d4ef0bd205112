#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>

namespace home {

// The time zone of this device, which systemd's timedated changes. GUI thread.
class TimeZone : public QObject {
    Q_OBJECT
public:
    TimeZone(const QDBusConnection &bus, QObject *parent);

    void ask();                             // changed() follows
    QString name() const { return m_name; } // as "Europe/Berlin"; without timedated what this process uses
    bool mayChange() const { return m_isThere; }
    void set(const QString &name); // changed() or failed() follows

    // All zones that belong to a place, as "Europe/Berlin", by name.
    static QStringList all();
    // "Europe" of "Europe/Berlin"; "Argentina, Buenos Aires" of "America/Argentina/Buenos_Aires".
    static QString areaOf(const QString &name);
    static QString placeOf(const QString &name);

signals:
    void changed();
    void failed(const QString &why);

private:
    QDBusConnection m_bus;
    QString m_name;
    bool m_isThere = false;
};

} // namespace home
