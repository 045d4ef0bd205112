// Feedback rules, history, focus ring, menu indexes, texts, marquee: rules of the player screen and its list.
#include "player/feedbackrules.h"
#include "player/focusring.h"
#include "player/menuactions.h"
#include "player/nowplayingtext.h"
#include "player/trackhistory.h"
#include "widgets/marquee.h"

#include <QtTest>

using feedbackrules::Action;
using feedbackrules::Situation;
using feedbackrules::Verdict;

Q_DECLARE_METATYPE(feedbackrules::Situation)

class PlayerRulesTest : public QObject {
    Q_OBJECT
private slots:
    void anActionIsJudgedByTheSituation_data();
    void anActionIsJudgedByTheSituation();
    void traitsAreJoinedByCommasAndEndWithAFullStop();
    void thumbsStayWithTheirRows();
    void theHistoryNeverExceedsThirty();
    void theRingIsWalkedBothWays();
    void buttonsLookFocusedOrNot_data();
    void buttonsLookFocusedOrNot();
    void menuIndexesStandForActions();
    void textsAreCut_data();
    void textsAreCut();
    void timesAreWritten_data();
    void timesAreWritten();
    void onlyTextsWiderThan250PixelsRun();
    void oneTurnOfTheMarqueeEndsWhereItBegan();
    void copiesOfTheTextCoverTheWindow_data();
    void copiesOfTheTextCoverTheWindow();
};

void PlayerRulesTest::anActionIsJudgedByTheSituation_data()
{
    QTest::addColumn<Situation>("situation");
    QTest::addColumn<QList<int>>("verdicts"); // of the six actions in their order
    const int go = int(Verdict::Go), no = int(Verdict::Ignore), ad = int(Verdict::NotForAds),
              shared = int(Verdict::NotForSharedStations);
    const auto row = [](const char *name, const QList<int> &verdicts, const std::function<void(Situation &)> &change) {
        Situation situation;
        change(situation);
        QTest::newRow(name) << situation << verdicts;
    };
    //                                      up     down   sleep  song  artist explain
    row("a plain track", QList<int>{go, go, go, go, go, go}, [](Situation &) {});
    row("keys refused", QList<int>{no, no, go, go, go, go}, [](Situation &s) { s.isActionAllowed = false; });
    row("a track is being started", QList<int>{go, no, no, go, go, go}, [](Situation &s) { s.isPlayReady = false; });
    row("nothing plays", QList<int>{no, no, no, no, no, no}, [](Situation &s) { s.isEntryValid = false; });
    row("asked already", QList<int>{no, no, no, no, no, go}, [](Situation &s) { s.isPermitted = false; });
    row("an ad", QList<int>{ad, ad, ad, ad, ad, ad}, [](Situation &s) {
        s.isAd = true;
        s.hasTrack = false;
    });
    row("a track without data", QList<int>{no, no, no, no, no, no}, [](Situation &s) { s.hasTrack = false; });
    row("a shared station", QList<int>{shared, shared, go, go, go, go},
        [](Situation &s) { s.isRatingAllowed = false; });
}

void PlayerRulesTest::anActionIsJudgedByTheSituation()
{
    QFETCH(Situation, situation);
    QFETCH(QList<int>, verdicts);
    for (int i = 0; i < verdicts.size(); ++i)
        QCOMPARE(int(feedbackrules::judge(static_cast<Action>(i), situation)), verdicts.at(i));
}

void PlayerRulesTest::traitsAreJoinedByCommasAndEndWithAFullStop()
{
    QCOMPARE(feedbackrules::joinTraits({"A", "B", "C"}), QStringLiteral("A,B,C."));
    QCOMPARE(feedbackrules::joinTraits({"A"}), QStringLiteral("A."));
    QCOMPARE(feedbackrules::joinTraits({}), QString());
}

void PlayerRulesTest::thumbsStayWithTheirRows()
{
    int thumbs[trackhistory::capacity] = {};
    QVERIFY(!trackhistory::makeRoom(thumbs, 0));
    trackhistory::setThumbOfRow(thumbs, 0, 1, trackhistory::ThumbUp);
    QVERIFY(!trackhistory::makeRoom(thumbs, 1));
    QCOMPARE(trackhistory::thumbOfRow(thumbs, 0, 2), 0);
    QCOMPARE(trackhistory::thumbOfRow(thumbs, 1, 2), 1);
    for (const int outside : {-1, 2})
        QCOMPARE(trackhistory::thumbOfRow(thumbs, outside, 2), 0);
    trackhistory::setThumbOfRow(thumbs, 0, 0, trackhistory::ThumbDown); // an empty history keeps nothing
    QCOMPARE(trackhistory::thumbOfRow(thumbs, 1, 2), 1);
}

void PlayerRulesTest::theHistoryNeverExceedsThirty()
{
    int thumbs[trackhistory::capacity] = {};
    for (int count = 0; count < 30; ++count)
        QVERIFY(!trackhistory::makeRoom(thumbs, count));
    trackhistory::setThumbOfRow(thumbs, 0, 30, trackhistory::ThumbDown);
    trackhistory::setThumbOfRow(thumbs, 29, 30, trackhistory::ThumbUp); // the oldest
    QVERIFY(trackhistory::makeRoom(thumbs, 30));
    QCOMPARE(trackhistory::thumbOfRow(thumbs, 0, 30), 0);
    QCOMPARE(trackhistory::thumbOfRow(thumbs, 1, 30), -1);
    QCOMPARE(trackhistory::thumbOfRow(thumbs, 29, 30), 0);
}

void PlayerRulesTest::theRingIsWalkedBothWays()
{
    const QList<int> order = {2, 4, 5, 6, 7, 8, 3};
    for (int i = 0; i < order.size(); ++i) {
        const int next = order.at((i + 1) % order.size());
        QCOMPARE(focusring::neighbour(order.at(i), true), next);
        QCOMPARE(focusring::neighbour(next, false), order.at(i));
    }
    for (const int outside : {-1, 0, 1, 9}) {
        QCOMPARE(focusring::neighbour(outside, true), outside);
        QCOMPARE(focusring::neighbour(outside, false), outside);
    }
}

void PlayerRulesTest::buttonsLookFocusedOrNot_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<bool>("isFocused");
    QTest::addColumn<bool>("isPaused");
    QTest::addColumn<QString>("style");
    const QString black = "rgb(0, 0, 0)", white = "rgb(255, 255, 255)";
    const auto style = [](const QString &image, const QString &border, const QString &color) {
        return (image.isEmpty() ? QString() : "image: url(:/images/" + image + ".png);\n") +
               "border-image: url(:/images/Button_" + border + ".png);\ncolor: " + color + ";\nborder-with: 5px;";
    };
    QTest::newRow("menu") << 4 << true << true << style("", "F", black);
    QTest::newRow("menu, normal") << 4 << false << true << style("", "N", white);
    QTest::newRow("play, playing") << 5 << true << false << style("Pause", "F", black);
    QTest::newRow("play, paused") << 5 << true << true << style("Play", "F", white);
    QTest::newRow("play, normal") << 5 << false << false << style("Pause", "N", white);
    QTest::newRow("next") << 6 << true << true << style("NextSong", "F", black);
    QTest::newRow("thumbs down") << 7 << true << true << style("ThumbsDown_Enable", "F", black);
    QTest::newRow("thumbs up, normal") << 8 << false << true << style("ThumbsUp_Enable", "N", white);
    QTest::newRow("a list is no button") << 2 << true << false << QString();
    QTest::newRow("nothing") << -1 << true << false << QString();
}

void PlayerRulesTest::buttonsLookFocusedOrNot()
{
    QFETCH(int, position);
    QFETCH(bool, isFocused);
    QFETCH(bool, isPaused);
    QTEST(focusring::buttonStyle(position, isFocused, isPaused), "style");
}

void PlayerRulesTest::menuIndexesStandForActions()
{
    using menuactions::ofIndex;
    using Menu = menuactions::Action;
    const QList<Menu> order = {Menu::BookmarkArtist, Menu::BookmarkSong,  Menu::Sleep,   Menu::CreateStation,
                               Menu::DeleteStation,  Menu::RenameStation, Menu::SignOut, Menu::Exit,
                               Menu::IdlePrompt,     Menu::Explain};
    for (int i = 0; i < order.size(); ++i)
        QCOMPARE(int(ofIndex(i)), int(order.at(i)));
    QCOMPARE(int(ofIndex(-1)), int(Menu::None));
    QCOMPARE(int(ofIndex(10)), int(Menu::None));
}

void PlayerRulesTest::textsAreCut_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << 0 << QString();
    QTest::newRow("thirty") << 30 << QString(30, 'x');
    QTest::newRow("thirty-one") << 31 << QString(30, 'x') + "...";
}

void PlayerRulesTest::textsAreCut()
{
    QFETCH(int, size);
    QTEST(nowplayingtext::cut(QString(size, 'x'), nowplayingtext::labelLength), "expected");
}

void PlayerRulesTest::timesAreWritten_data()
{
    QTest::addColumn<int>("h");
    QTest::addColumn<int>("m");
    QTest::addColumn<int>("s");
    QTest::addColumn<QString>("expected");
    QTest::newRow("three minutes") << 0 << 3 << 7 << "03:07";
    QTest::newRow("just under an hour") << 0 << 59 << 59 << "59:59";
    QTest::newRow("an hour") << 1 << 0 << 0 << "1:00:00";
    QTest::newRow("more") << 1 << 2 << 5 << "1:02:05";
    QTest::newRow("ten hours") << 10 << 10 << 10 << "10:10:10";
}

void PlayerRulesTest::timesAreWritten()
{
    QFETCH(int, h);
    QFETCH(int, m);
    QFETCH(int, s);
    QTEST(nowplayingtext::time(h, m, s), "expected");
}

void PlayerRulesTest::onlyTextsWiderThan250PixelsRun()
{
    QVERIFY(!marquee::runs(250));
    QVERIFY(marquee::runs(251));
}

void PlayerRulesTest::oneTurnOfTheMarqueeEndsWhereItBegan()
{
    int offset = 0;
    for (int step = 1; step < 40; ++step) {
        QCOMPARE(marquee::advance(offset, 40), marquee::Step::Shift);
        QCOMPARE(offset, step);
    }
    QCOMPARE(marquee::advance(offset, 40), marquee::Step::ShiftAndPause);
    QCOMPARE(offset, 0);
}

void PlayerRulesTest::copiesOfTheTextCoverTheWindow_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("width");
    QTest::addColumn<QList<int>>("edges");
    QTest::newRow("nothing to draw") << 0 << 0 << QList<int>();
    QTest::newRow("at rest") << 0 << 400 << QList<int>{0};
    QTest::newRow("moved, the next copy out of sight") << 100 << 400 << QList<int>{-100};
    QTest::newRow("the next copy at the edge") << 146 << 400 << QList<int>{-146, 254};
    QTest::newRow("narrow") << 30 << 100 << QList<int>{-30, 70, 170};
}

void PlayerRulesTest::copiesOfTheTextCoverTheWindow()
{
    QFETCH(int, offset);
    QFETCH(int, width);
    QTEST(marquee::copies(offset, width, 254), "edges");
}

QTEST_APPLESS_MAIN(PlayerRulesTest)
#include "player_rules_test.moc"
