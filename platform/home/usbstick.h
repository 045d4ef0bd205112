#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

class QDBusMessage;

namespace home {

// A USB stick to write to. udisks2 mounts it where that runs; else one must be mounted already. Every call is
// asynchronous, one at a time. GUI thread.
class UsbStick : public QObject {
    Q_OBJECT
public:
    UsbStick(const QDBusConnection &bus, QObject *parent);

    // ready() or failed() follows.
    void find();
    // After ready(): everything is on the stick, and what find() has mounted is unmounted. released() follows.
    void release();

signals:
    void ready(const QString &folder);
    void failed(const QString &words);
    // `isOut`: it may be taken out now. Not so when somebody else had mounted it, or still uses it.
    void released(bool isOut);

private:
    void choose(const QDBusMessage &reply);
    void mount();

    QDBusConnection m_bus;
    QString m_device;         // object path of the file system; empty: none of udisks2
    QString m_folder;         // after ready()
    bool m_isMounted = false; // by this object
};

} // namespace home
