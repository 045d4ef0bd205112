#include "app/errortexts.h"

#include <QtTest>

using errortexts::Place;
using errortexts::Reaction;

Q_DECLARE_METATYPE(errortexts::Place)
Q_DECLARE_METATYPE(errortexts::Reaction)

class AppErrorTexts : public QObject {
    Q_OBJECT
private slots:
    void everyCodeHasItsExactWords_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("words");
        QTest::addColumn<bool>("endsWithContact");
        const auto row = [](int code, const char *words, bool endsWithContact = false) {
            QTest::addRow("%d", code) << code << QString::fromLatin1(words) << endsWithContact;
        };
        row(-504, "A network error has occurred.  Please check your network connection and try again.");
        row(5096, "Velmora is conducting system maintenance. You will be able to listen to existing stations while "
                  "they work on their systems, but you won't be able to create new stations, submit feedback or edit "
                  "your account in any way until the maintenance is complete. Thanks for your patience.");
        const char *token = "Sorry,this token is invalid now .Please contact Velmora listener support at ";
        row(5097, token, true);
        row(5098, "Invalid username or password, please try again.");
        row(5099, "Sorry,this account is no longer active.Please contact Velmora listener support at ", true);
        row(5100, "Sorry,this account is authorized.Please contact Velmora listener support at ", true);
        row(5101, "Sorry, Max stations Reached, create station failed.");
        row(5102, "Station does not exist.");
        row(5107, "Invalid username");
        row(5108, "Invalid password");
        row(5126, token, true);
        for (int code : {5105, 5000, 5004, -501, -505, 1, 0})
            row(code, "NULL");
    }
    void everyCodeHasItsExactWords()
    {
        QFETCH(int, code);
        QFETCH(QString, words);
        const errortexts::ErrorText text = errortexts::textOf(code);
        QCOMPARE(QString::fromLatin1(text.source), words);
        QTEST(text.endsWithContact, "endsWithContact");
        QCOMPARE(errortexts::hasText(code), words != QLatin1String("NULL"));
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
        for (const auto &[code, place, reaction] : cases)
            QCOMPARE(errortexts::reactionTo(code, place), reaction);
    }
};

QTEST_APPLESS_MAIN(AppErrorTexts)
#include "apperrortexts.moc"
