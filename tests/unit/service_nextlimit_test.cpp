#include "fakes/logcapture.h"
#include "service/velmoranextlimit.h"

#include <QtTest>

class ServiceNextLimitTest : public QObject {
    Q_OBJECT
    QTime m_now;
    const QString a = QStringLiteral("station a");

    VelmoraNextLimit &limit() { return *VelmoraNextLimit::getInstance(); }
    void skip(const QString &station, int times)
    {
        for (int i = 0; i < times; ++i)
            limit().addIntoQueue(station);
    }

private slots:
    void init()
    {
        m_now = QTime(12, 0);
        VelmoraNextLimit::setClock([this] { return m_now; });
    }
    void cleanup()
    {
        delete VelmoraNextLimit::existing();
        VelmoraNextLimit::setClock(nullptr);
    }

    void anAllowedSkipRemovesTheOldestRecord()
    {
        skip(a, 1);
        m_now = QTime(12, 30);
        skip(a, 5);
        m_now = QTime(13, 0, 0);
        QVERIFY(!limit().isAllowedNext(a));
        QVERIFY(limit().isAllowedNext("Station a")); // exactly this token
        m_now = QTime(13, 0, 1);
        QVERIFY(limit().isAllowedNext(a));
        LogCapture log;
        QVERIFY(limit().isAllowedNext(a));
        QVERIFY(log.contains("count < 6.count=5"));
    }

    void everySecondOverdueRecordIsSkippedOver()
    {
        skip(a, 6);
        m_now = QTime(13, 0, 1);
        QVERIFY(QMetaObject::invokeMethod(&limit(), "checkOverdue"));
        LogCapture log;
        QVERIFY(limit().isAllowedNext(a)); // records 0, 2 and 4 are gone
        QVERIFY(log.contains("count=3"));
    }
};

QTEST_GUILESS_MAIN(ServiceNextLimitTest)
#include "service_nextlimit_test.moc"
