// Feedback rules, history, texts, marquee: rules of the player screen and its list.
#include "player/feedbackrules.h"
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
    void anActionIsJudgedByTheSituation_data()
    {
        QTest::addColumn<Situation>("situation");
        QTest::addColumn<QList<int>>("verdicts"); // of the six actions in their order
        const int go = int(Verdict::Go), no = int(Verdict::Ignore), ad = int(Verdict::NotForAds),
                  shared = int(Verdict::NotForSharedStations);
        const auto row = [](const char *name, const QList<int> &verdicts,
                            const std::function<void(Situation &)> &change) {
            Situation situation;
            change(situation);
            QTest::newRow(name) << situation << verdicts;
        };
        //                                      up     down   sleep  song  artist explain
        row("a plain track", QList<int>{go, go, go, go, go, go}, [](Situation &) {});
        row("keys refused", QList<int>{no, no, go, go, go, go}, [](Situation &s) { s.isActionAllowed = false; });
        row("a track is being started", QList<int>{go, no, no, go, go, go},
            [](Situation &s) { s.isPlayReady = false; });
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

    void anActionIsJudgedByTheSituation()
    {
        QFETCH(Situation, situation);
        QFETCH(QList<int>, verdicts);
        for (int i = 0; i < verdicts.size(); ++i)
            QCOMPARE(int(feedbackrules::judge(static_cast<Action>(i), situation)), verdicts.at(i));
    }

    void thumbsStayWithTheirRows()
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
