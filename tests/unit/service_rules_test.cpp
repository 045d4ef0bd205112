#include "service/deviceidentity.h"
#include "service/skiprules.h"
#include "service/tokenrenewal.h"
#include "service/wscommands.h"
#include "velmora_ws.h"

#include <QtTest>

using tokenrenewal::Action;
using tokenrenewal::Situation;

Q_DECLARE_METATYPE(tokenrenewal::Situation)
Q_DECLARE_METATYPE(tokenrenewal::Action)

class ServiceRulesTest : public QObject {
    Q_OBJECT
private slots:
    void exactlyTheseRequestsAreSentAgain()
    {
        const QSet<int> retried{0, 3, 4, 5, 6, 8, 9, 10, 12, 13, 15, 17, 21, 23, 29, 35};
        const QSet<int> partnerOnly{3, 6, 7, 8, 24, 26, 31};
        for (int id = -1; id <= 40; ++id) {
            QCOMPARE(wscommands::command(id).isRetried, retried.contains(id));
            QCOMPARE(wscommands::command(id).isPartnerTokenOnly, partnerOnly.contains(id));
            const bool isReserved = id < 0 || id == 19 || id == 20 || id >= 36;
            QCOMPARE(wscommands::command(id).name == nullptr, isReserved);
        }
        QCOMPARE(wscommands::command(VLM_WS_MSGID_SLEEP_SONG).name, "sleepSong");
        QCOMPARE(wscommands::command(VLM_WS_MSGID_EXPLAIN_TRACK).name, "explainTrack");
    }

    void aCompletionLeadsToOneAction_data()
    {
        QTest::addColumn<Situation>("situation");
        QTest::addColumn<Action>("action");
        const int none = -1, partner = 2, user = 3, search = 9, playlist = 15, device = 8, list = 29, info = 31;
        QTest::newRow("success goes to the screens") << Situation{list, 0, none, false} << Action::Emit;
        QTest::newRow("another failure goes to the screens") << Situation{list, 5096, none, false} << Action::Emit;
        QTest::newRow("the second invalid-token code is no renewal")
            << Situation{list, 5126, none, false} << Action::Emit;
        QTest::newRow("an inactive account without renewal") << Situation{list, 5099, none, false} << Action::Emit;
        QTest::newRow("an expired token starts a renewal")
            << Situation{list, 5097, none, false} << Action::StartPartnerLogin;
        QTest::newRow("an expired token during a renewal starts over")
            << Situation{search, 5097, list, false} << Action::StartPartnerLogin;
        QTest::newRow("an expired partner token starts over")
            << Situation{partner, 5097, list, false} << Action::StartPartnerLogin;
        QTest::newRow("an inactive account ends the renewal")
            << Situation{user, 5099, list, false} << Action::ReportInactive;
        QTest::newRow("an inactive account in a foreign request ends it too")
            << Situation{playlist, 5099, list, true} << Action::ReportInactive;
        QTest::newRow("after the partner login the device login")
            << Situation{partner, 0, list, false} << Action::StartDeviceLogin;
        QTest::newRow("a failed partner login is not examined")
            << Situation{partner, -504, list, false} << Action::StartDeviceLogin;
        QTest::newRow("partner token only: sent again at once")
            << Situation{partner, 0, device, true} << Action::Resend;
        QTest::newRow("partner token only, not sent again") << Situation{partner, 0, info, true} << Action::Drop;
        QTest::newRow("after the device login sent again") << Situation{user, 0, list, false} << Action::Resend;
        QTest::newRow("a failed device login is not examined") << Situation{user, 5105, list, false} << Action::Resend;
        QTest::newRow("a request that is not sent again is dropped") << Situation{user, 0, 22, false} << Action::Drop;
        QTest::newRow("a waiting partner login is dropped") << Situation{user, 0, partner, false} << Action::Drop;
        QTest::newRow("a waiting user login is sent again") << Situation{partner, 0, user, true} << Action::Resend;
        QTest::newRow("others pass during a renewal") << Situation{playlist, 0, list, false} << Action::Emit;
        QTest::newRow("a waiting request of identifier 0 counts")
            << Situation{partner, 0, 0, false} << Action::StartDeviceLogin;
        QTest::newRow("logins without renewal reach the screens") << Situation{partner, 0, none, false} << Action::Emit;
        QTest::newRow("user logins without renewal too") << Situation{user, 5098, none, false} << Action::Emit;
    }
    void aCompletionLeadsToOneAction()
    {
        QFETCH(Situation, situation);
        QTEST(tokenrenewal::decide(situation), "action");
    }

    void onlyTheFiveSlotsAreDigits_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("identity");
        for (const char *slot : {"0", "1", "2", "3", "4"})
            QTest::newRow(slot) << QString::fromLatin1(slot) << QStringLiteral("001A2B3C4D5E-") + QLatin1String(slot);
        for (const char *other : {"5", "9", "", " 3", "3 ", "03", "secret", "-1"})
            QTest::addRow("'%s'", other) << QString::fromLatin1(other) << QStringLiteral("001A2B3C4D5E-9");
        QTest::newRow("a digit of another script") << QString(QChar(0x0663)) << QStringLiteral("001A2B3C4D5E-9");
    }
    void onlyTheFiveSlotsAreDigits()
    {
        QFETCH(QString, password);
        QTEST(deviceIdentity("\x00\x1a\x2b\x3c\x4d\x5e", password), "identity");
    }

    void highAddressBytesAreTwoDigitsEach()
    {
        QCOMPARE(macDigits("\xff\x00\x80\x0f\xa0\x7f"), QStringLiteral("FF00800FA07F"));
    }

    void aSeventhSkipWaitsForTheFirstToLeaveTheHour()
    {
        const std::tuple<QTime, QTime, bool> cases[] = {
            {QTime(10, 0), QTime(10, 0), false},         // the same second
            {QTime(10, 0), QTime(11, 0), false},         // 3,600 seconds
            {QTime(10, 0), QTime(11, 0, 0, 999), false}, // 3,600 seconds and the better part of one
            {QTime(10, 0), QTime(11, 0, 1), true},       // 3,601 seconds
            {QTime(23, 30), QTime(0, 20), false},        // over midnight, 3,000 seconds
            {QTime(23, 30), QTime(0, 30, 1), true},      // over midnight, 3,601 seconds
            {QTime(10, 0), QTime(9, 0), true},           // a clock set back is taken for midnight
        };
        for (const auto &[first, now, isAllowed] : cases) {
            QList<skiprules::Record> records{{"b", QTime(1, 0)}, {"a", first}};
            for (int i = 0; i < 5; ++i)
                records.append({"a", now});
            const skiprules::Answer answer = skiprules::ask(records, "a", now);
            QCOMPARE(answer.isAllowed, isAllowed);
            QCOMPARE(answer.isFirstExpired, answer.isAllowed);
            QCOMPARE(answer.count, 6);
            QCOMPARE(answer.first, 1);
        }
    }

    void overdueDoesNotAllowForMidnight()
    {
        const skiprules::Record record{"a", QTime(10, 0)};
        QVERIFY(!skiprules::isOverdue(record, QTime(11, 0, 0)));
        QVERIFY(skiprules::isOverdue(record, QTime(11, 0, 1)));
        QVERIFY(!skiprules::isOverdue({"a", QTime(23, 59)}, QTime(8, 0)));
    }
};

QTEST_GUILESS_MAIN(ServiceRulesTest)
#include "service_rules_test.moc"
