#pragma once

#include "service/skiprules.h"

#include <QObject>
#include <QString>
#include <QTime>

#include <functional>

// At most six skips a station within 3,600 seconds. Singleton, GUI thread only; deleted at sign-out.
class VelmoraNextLimit : public QObject {
    Q_OBJECT
public:
    static VelmoraNextLimit *getInstance();
    static VelmoraNextLimit *existing(); // null while nobody has asked for it
    ~VelmoraNextLimit() override;

    // One more skip on this station now? A true answer may drop the oldest record: ask once an action.
    bool isAllowedNext(const QString &stationToken);
    void addIntoQueue(const QString &stationToken);

    // Tests turn the clock; null gives the wall clock back.
    static void setClock(std::function<QTime()> clock);

private slots:
    void checkOverdue(); // connected to nothing (deliberate)

private:
    VelmoraNextLimit();

    static VelmoraNextLimit *m_instance;
    QList<skiprules::Record> m_queue; // in insertion order
};
