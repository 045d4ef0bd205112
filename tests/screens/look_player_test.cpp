// Automatic checks of the player screen's look in its states.

#include "screens/inlanguage.h"
#include "screens/lookcheck.h"
#include "screens/playerrig.h"

class LookPlayerTest : public QObject {
    Q_OBJECT
private slots:
    void thePlayerHasNoFault()
    {
        for (const char *song :
             {"Salt and Lanterns", "The Everlasting Afternoon of an Orchestra Without a Conductor"}) {
            for (int rights = 0; rights <= 6; ++rights) {
                const Row row(QStringLiteral("%1, position %2").arg(song).arg(rights));
                PlayingRig rig({PlayerRig::track(song), PlayerRig::track("Paper Boats")});
                for (int i = 0; i < rights; ++i)
                    rig.key(screentest::Right);
                QWidget *panel = screentest::childWidget(rig.player, "playbackControlWidget");
                QTRY_COMPARE(panel->x(), 640); // it has slid in
                QTRY_COMPARE(lookcheck::faults(rig.player).join(QLatin1Char('\n')), QString());
                const QStringList lit = lookcheck::focused(rig.player);
                QVERIFY2(lit.size() == 1, qPrintable(lit.join(QLatin1Char(' '))));
            }
        }
    }

    void noLanguageCutsAText()
    {
        QStringList cut;
        for (const QString &language : InLanguage::all()) {
            const InLanguage texts(language);
            const PlayingRig rig({PlayerRig::track("Salt and Lanterns"), PlayerRig::track("Paper Boats")});
            cut += lookcheck::cutTexts(rig.player);
        }
        QCOMPARE(cut.join(u'\n'), QString());
    }
};

QTEST_MAIN(LookPlayerTest)
#include "look_player_test.moc"
