#include "app/errortexts.h"
#include "fakes/row.h"

#include <QtTest>

using errortexts::Place;
using errortexts::Reaction;

class AppErrorTexts : public QObject {
    Q_OBJECT
private slots:
    void everyCodeHasItsExactText()
    {
        struct Case {
            int code;
            const char *words;
            bool endsWithContact = false;
        };
        const char *token = "Sorry,this token is invalid now .Please contact Velmora listener support at ";
        const Case cases[] = {
            {-504, "A network error has occurred.  Please check your network connection and try again."},
            {5096, "Velmora is conducting system maintenance. You will be able to listen to existing stations while "
                   "they work on their systems, but you won't be able to create new stations, submit feedback or edit "
                   "your account in any way until the maintenance is complete. Thanks for your patience."},
            {5097, token, true},
            {5098, "Invalid username or password, please try again."},
            {5099, "Sorry,this account is no longer active.Please contact Velmora listener support at ", true},
            {5100, "Sorry,this account is authorized.Please contact Velmora listener support at ", true},
            {5101, "Sorry, Max stations Reached, create station failed."},
            {5102, "Station does not exist."},
            {5107, "Invalid username"},
            {5108, "Invalid password"},
            {5126, token, true},
        };
        for (const Case &c : cases) {
            const Row row(QString::number(c.code));
            QCOMPARE(QByteArray(errortexts::textOf(c.code).source), QByteArray(c.words));
            QCOMPARE(errortexts::textOf(c.code).endsWithContact, c.endsWithContact);
            QVERIFY(errortexts::hasText(c.code));
        }
        for (const int code : {5105, 5000, 5004, -501, -505, 1, 0})
            QVERIFY2(!errortexts::hasText(code), qPrintable(QString::number(code)));
    }

    void theSameCodeEndsOneScreenAndLeavesAnotherUsable()
    {
        const std::tuple<int, Place, Reaction> cases[] = {
            {5099, Place::Player, Reaction::SignOut},        // inactive account on the player signs out
            {-504, Place::Player, Reaction::Leave},          // network failure on the player leaves
            {5101, Place::Player, Reaction::Stay},           // refused station on the player stays
            {5099, Place::Loading, Reaction::SelectAccount}, // inactive account while loading asks for an account
            {-504, Place::Loading, Reaction::Leave},         // network failure while loading leaves
            {4711, Place::Loading, Reaction::Leave},         // unknown code while loading leaves
            {5099, Place::Account, Reaction::Stay},          // inactive account at sign-in stays
            {-504, Place::Account, Reaction::Stay},          // network failure at sign-in stays
        };
        for (const auto &[code, place, reaction] : cases) {
            const Row row(QStringLiteral("%1 at place %2").arg(code).arg(int(place)));
            QCOMPARE(errortexts::reactionTo(code, place), reaction);
        }
    }
};

QTEST_APPLESS_MAIN(AppErrorTexts)
#include "app_errortexts_test.moc"
