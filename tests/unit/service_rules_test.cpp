#include "fakes/row.h"
#include "service/deviceidentity.h"
#include "service/skiprules.h"
#include "service/tokenrenewal.h"
#include "velmora_ws.h"

#include <QtTest>

using tokenrenewal::Action;
using tokenrenewal::Situation;

class ServiceRulesTest : public QObject {
    Q_OBJECT
private slots:
    void aCompletionLeadsToOneAction()
    {
        struct Case {
            const char *name;
            Situation situation;
            Action action;
        };
        const int none = -1, partner = 2, user = 3, search = 9, playlist = 15, device = 8, list = 29, info = 31;
        const Case cases[] = {
            {"success goes to the screens", {list, 0, none, false}, Action::Emit},
            {"another failure goes to the screens", {list, 5096, none, false}, Action::Emit},
            {"the second invalid-token code is no renewal", {list, 5126, none, false}, Action::Emit},
            {"an inactive account without renewal", {list, 5099, none, false}, Action::Emit},
            {"an expired token starts a renewal", {list, 5097, none, false}, Action::StartPartnerLogin},
            {"an expired token during a renewal starts over", {search, 5097, list, false}, Action::StartPartnerLogin},
            {"an expired partner token starts over", {partner, 5097, list, false}, Action::StartPartnerLogin},
            {"an inactive account ends the renewal", {user, 5099, list, false}, Action::ReportInactive},
            {"an inactive account in a foreign request ends it too",
             {playlist, 5099, list, true},
             Action::ReportInactive},
            {"after the partner login the device login", {partner, 0, list, false}, Action::StartDeviceLogin},
            {"a failed partner login is not examined", {partner, -504, list, false}, Action::StartDeviceLogin},
            {"partner token only: sent again at once", {partner, 0, device, true}, Action::Resend},
            {"partner token only, not sent again", {partner, 0, info, true}, Action::Drop},
            {"after the device login sent again", {user, 0, list, false}, Action::Resend},
            {"a failed device login is not examined", {user, 5105, list, false}, Action::Resend},
            {"a request that is not sent again is dropped", {user, 0, 22, false}, Action::Drop},
            {"a waiting partner login is dropped", {user, 0, partner, false}, Action::Drop},
            {"a waiting user login is sent again", {partner, 0, user, true}, Action::Resend},
            {"others pass during a renewal", {playlist, 0, list, false}, Action::Emit},
            {"a waiting request of identifier 0 counts", {partner, 0, 0, false}, Action::StartDeviceLogin},
            {"logins without renewal reach the screens", {partner, 0, none, false}, Action::Emit},
            {"user logins without renewal too", {user, 5098, none, false}, Action::Emit},
        };
        for (const Case &c : cases) {
            const Row row(c.name);
            QCOMPARE(tokenrenewal::decide(c.situation), c.action);
        }
    }

    void onlyTheFiveSlotsAreDigits()
    {
        for (const char *slot : {"0", "1", "2", "3", "4"})
            QCOMPARE(deviceIdentity("\x00\x1a\x2b\x3c\x4d\x5e", slot),
                     QLatin1String("001A2B3C4D5E-") + QLatin1String(slot));
        for (const char *other :
             {"5", "9", "", " 3", "3 ", "03", "secret", "-1", "\u0663"}) { // and a digit of another script
            const Row row(other);
            QCOMPARE(deviceIdentity("\x00\x1a\x2b\x3c\x4d\x5e", other), QStringLiteral("001A2B3C4D5E-9"));
        }
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
            {QTime(10, 0), QTime(11, 0, 0, 999), false}, // almost 3,601 seconds
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
