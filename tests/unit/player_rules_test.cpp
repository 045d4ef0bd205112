// Feedback rules, history, texts, marquee: rules of the player screen and its list.
#include "fakes/row.h"
#include "player/feedbackrules.h"
#include "player/nowplayingtext.h"
#include "player/screencover.h"
#include "player/trackhistory.h"
#include "widgets/cuttext.h"
#include "widgets/marquee.h"

#include <QtTest>

using feedbackrules::Action;
using feedbackrules::Situation;
using feedbackrules::Verdict;

class PlayerRulesTest : public QObject {
    Q_OBJECT
private slots:
    void anActionIsJudgedByTheSituation()
    {
        struct Case {
            const char *name;
            std::function<void(Situation &)> change;
            Verdict verdicts[6]; // of the actions in their order: up, down, sleep, song, artist, explain
        };
        const Verdict go = Verdict::Go, no = Verdict::Ignore, ad = Verdict::NotForAds,
                      shared = Verdict::NotForSharedStations;
        const Case cases[] = {
            {"a plain track", [](Situation &) {}, {go, go, go, go, go, go}},
            {"keys refused", [](Situation &s) { s.isActionAllowed = false; }, {no, no, go, go, go, go}},
            {"a track is being started", [](Situation &s) { s.isPlayReady = false; }, {go, no, no, go, go, go}},
            {"nothing plays", [](Situation &s) { s.isEntryValid = false; }, {no, no, no, no, no, no}},
            {"asked already", [](Situation &s) { s.isPermitted = false; }, {no, no, no, no, no, go}},
            {"an ad", [](Situation &s) { s.isAd = !(s.hasTrack = false); }, {ad, ad, ad, ad, ad, ad}},
            {"a track without data", [](Situation &s) { s.hasTrack = false; }, {no, no, no, no, no, no}},
            {"a shared station", [](Situation &s) { s.isRatingAllowed = false; }, {shared, shared, go, go, go, go}},
        };
        for (const Case &c : cases) {
            const Row row(c.name);
            Situation situation;
            c.change(situation);
            for (int i = 0; i < 6; ++i)
                QCOMPARE(feedbackrules::judge(static_cast<Action>(i), situation), c.verdicts[i]);
        }
    }

    void thumbsStayWithTheirRows()
    {
        using trackhistory::Thumb;
        Thumb thumbs[trackhistory::capacity] = {};
        QVERIFY(!trackhistory::makeRoom(thumbs, 0));
        trackhistory::setThumbOfRow(thumbs, 0, 1, Thumb::Up);
        QVERIFY(!trackhistory::makeRoom(thumbs, 1));
        QCOMPARE(trackhistory::thumbOfRow(thumbs, 0, 2), Thumb::None);
        QCOMPARE(trackhistory::thumbOfRow(thumbs, 1, 2), Thumb::Up);
        for (const int outside : {-1, 2})
            QCOMPARE(trackhistory::thumbOfRow(thumbs, outside, 2), Thumb::None);
        trackhistory::setThumbOfRow(thumbs, 0, 0, Thumb::Down); // an empty history keeps nothing
        QCOMPARE(trackhistory::thumbOfRow(thumbs, 1, 2), Thumb::Up);
    }

    void whatLiesOverThePlayerDecidesAboutFocusAndKeys()
    {
        using screencover::KeyOwner;
        struct Case {
            const char *name;
            screencover::Cover cover;
            bool mayRestore, mayLook;
            KeyOwner owner;
        };
        const Case cases[] = {
            {"nothing", {}, true, true, KeyOwner::Player},
            {"a box", {.boxes = 1}, false, false, KeyOwner::Unchanged},
            {"a dialog", {.isDialogOpen = true}, false, false, KeyOwner::Dialog},
            {"a box over a dialog", {.boxes = 2, .isDialogOpen = true}, false, false, KeyOwner::Unchanged},
            {"another screen", {.isHidden = true}, true, true, KeyOwner::OtherScreen},
            {"the animation", {.isAnimated = true}, true, false, KeyOwner::Player},
            {"a fatal message", {.isFatal = true}, false, false, KeyOwner::Player},
            {"its end", {.isHidden = true, .isLeaving = true}, false, false, KeyOwner::Unchanged},
        };
        for (const Case &c : cases) {
            const Row row(c.name);
            QCOMPARE(screencover::mayRestoreFocus(c.cover), c.mayRestore);
            QCOMPARE(screencover::mayLookFocused(c.cover), c.mayLook);
            QCOMPARE(screencover::keyOwner(c.cover), c.owner);
        }
    }

    void textsAreCutBetweenCharacters()
    {
        QCOMPARE(cutText("abc", 3), QStringLiteral("abc"));
        QCOMPARE(cutText("abcd", 3), QStringLiteral("abc..."));
        const QString note = QString::fromUtf8("ab\xf0\x9f\x8e\xb5"); // the note takes two units
        QCOMPARE(cutText(note + "cd", 3), QStringLiteral("ab..."));
        QCOMPARE(cutText(note + "cd", 4), note + "...");
    }

    void timesAreWritten()
    {
        QCOMPARE(nowplayingtext::time(0, 3, 7), QStringLiteral("03:07"));
        QCOMPARE(nowplayingtext::time(0, 59, 59), QStringLiteral("59:59"));
        QCOMPARE(nowplayingtext::time(1, 2, 5), QStringLiteral("1:02:05"));
        QCOMPARE(nowplayingtext::time(10, 10, 10), QStringLiteral("10:10:10"));
    }

    void oneTurnOfTheMarqueeEndsWhereItBegan()
    {
        int offset = 0;
        for (int step = 1; step < 40; ++step) {
            QCOMPARE(marquee::advance(offset, 40), marquee::Step::Shift);
            QCOMPARE(offset, step);
        }
        QCOMPARE(marquee::advance(offset, 40), marquee::Step::ShiftAndPause);
        QCOMPARE(offset, 0);
    }

    void copiesOfTheTextCoverTheWindow()
    {
        QCOMPARE(marquee::copies(0, 0, 254), QList<int>());
        QCOMPARE(marquee::copies(0, 400, 254), QList<int>{0});
        QCOMPARE(marquee::copies(100, 400, 254), QList<int>{-100}); // the next copy is out of sight
        QCOMPARE(marquee::copies(146, 400, 254), QList<int>({-146, 254}));
        QCOMPARE(marquee::copies(30, 100, 254), QList<int>({-30, 70, 170}));
    }
};

QTEST_APPLESS_MAIN(PlayerRulesTest)
#include "player_rules_test.moc"
