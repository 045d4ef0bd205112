// The look of every screen except the player: texts, safe area, overlaps, focus, contrast, accessible names.

#include "account/deviceactivation.h"
#include "account/emailpwddlg.h"
#include "account/internetradiodlg.h"
#include "account/loadingdlg.h"
#include "account/selectuserdlg.h"
#include "account/signindlg.h"
#include "account/welcomedlg.h"
#include "app/plainlook.h"
#include "screens/accountfixture.h"
#include "screens/inlanguage.h"
#include "screens/lookcheck.h"
#include "station/aboutdlg.h"
#include "station/createstationdlg.h"
#include "station/menudlg.h"
#include "station/renamestationdlg.h"
#include "station/whydlg.h"
#include "widgets/imagelistwidget.h"
#include "widgets/msgboxdlg.h"
#include "widgets/roundprogressbar.h"
#include "widgets/sharppanels.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>

using namespace screentest;

namespace {

const QString longestMessage = QStringLiteral(
    "Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour. If you want to "
    "hear something else, you can switch to another one of your stations or create a new one by searching for an "
    "artist "
    "or track that you love and would like to hear more of today.");

constexpr char maintenance[] = // the longest that a service sends
    "Velmora is conducting system maintenance. You will be able to listen to existing stations while they work on "
    "their systems, but you won't be able to create new stations, submit feedback or edit your account in any way "
    "until the maintenance is complete. Thanks for your patience.";

using Make = std::function<QWidget *()>;

void type(QWidget *dialog, const char *fieldName, const QString &text)
{
    auto *field = child<QLineEdit>(dialog, fieldName);
    for (const QChar letter : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
        QCoreApplication::sendEvent(field, &press);
    }
}

} // namespace

Q_DECLARE_METATYPE(Make)

class LookScreensTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        prepare();
        new SharpPanels(qApp);
        QFile style(QStringLiteral(":/velmora.qss")); // the same program is also built without pictures
        QCOMPARE(style.open(QIODevice::ReadOnly), !plainlook::isNeeded());
        qApp->setStyleSheet(plainlook::isNeeded() ? plainlook::styleSheet() : QString::fromUtf8(style.readAll()));
    }

    void aScreenHasNoFault_data()
    {
        QTest::addColumn<Make>("make");
        QTest::addColumn<int>("focused");
        QTest::addColumn<QString>("language");
        const QStringList others = plainlook::isNeeded() ? QStringList() : InLanguage::all();
        const auto row = [&others](const QString &name, int focused, const Make &make) {
            QTest::newRow(qPrintable(name)) << make << focused << "en";
            for (const QString &language : others)
                QTest::newRow(qPrintable(language + u' ' + name)) << make << focused << language;
        };
        row("loading", 0, [] { return new LoadingDlg; });
        row("welcome", 1, [] { return new WelcomeDlg; });
        row("one account", 1, [] {
            ScreenFixture::storeAccounts({QStringLiteral("living.room@example.org")});
            return new SelectUserDlg(1);
        });
        row("five accounts, delete", 1, [] {
            ScreenFixture::storeAccounts({"living.room@example.org", "kitchen.radio@example.org", "guest@example.org",
                                          "a.very.long.mailbox.name@mail.example.org", "hobby.room@example.org"});
            auto *dialog = new SelectUserDlg(1);
            dialog->show();
            key(dialog, Right);
            return dialog;
        });
        row("activation", 1, [] {
            return new InternetRadioDlg(deviceactivation::codeLine(QStringLiteral("WWWWWWWW")),
                                        deviceactivation::pageLine(QStringLiteral("http://velmora.invalid/activate")));
        });
        row("sign-in, prompt", 1, [] { return new SignInDlg; });
        row("sign-in, typing", 1, [] {
            auto *dialog = new SignInDlg;
            dialog->show();
            type(dialog, "emailLineEdit", QStringLiteral("living.room"));
            return dialog;
        });
        row("reminder", 1, [] { return new EmailPwdDlg; });
        row("create, prompt", 1, [] { return new CreateStationDlg(1); });
        row("create, second page", 1, [] {
            auto *dialog = new CreateStationDlg(1);
            dialog->show();
            key(dialog, Red);
            return dialog;
        });
        row("rename", 1, [] { return new RenameStationDlg(QStringLiteral("Slow Piano"), QStringLiteral("t")); });
        row("menu", 1, [] {
            auto *dialog = new MenuDlg;
            dialog->move(450, 215);
            return dialog;
        });
        row("why", 1, [] {
            auto *dialog = new WhyDlg(QStringLiteral("Based on what you've told us so far. ").repeated(9));
            dialog->move(240, 110);
            return dialog;
        });
        row("about", 1, [] {
            auto *dialog = new AboutDlg;
            dialog->move(240, 110);
            return dialog;
        });
        for (const int kind : {MSG_ERROR, MSG_WARNING, MSG_INFO, MSG_QUESTION})
            row(QStringLiteral("box of kind %1").arg(kind), 1, [kind] {
                const QString text = VelmoraParentWidget::tr(maintenance);
                auto *box = new MsgboxDlg(kind, text == QLatin1String(maintenance) ? longestMessage : text, nullptr);
                box->setAttribute(Qt::WA_DeleteOnClose, false);
                box->move(240, 175);
                return box;
            });
    }

    // Where a text does not fit, its translation is shortened, not its font.
    void aScreenHasNoFault()
    {
        QFETCH(Make, make);
        QFETCH(int, focused);
        QFETCH(QString, language);
        const InLanguage texts(language);
        ScreenFixture fixture;
        const QPointer<QWidget> screen = make();
        const auto end =
            qScopeGuard([&] { delete screen; }); // also after a failure: a screen that is left over would show boxes
        screen->show();
        screen->activateWindow();
        settle();
        if (language != "en") {
            QCOMPARE(lookcheck::cutTexts(screen).join(u'\n'), QString());
            return;
        }
        QCOMPARE(lookcheck::faults(screen).join(QLatin1Char('\n')), QString());
        const QStringList lit = lookcheck::focused(screen);
        QVERIFY2(lit.size() == focused, qPrintable(lit.join(QLatin1Char(' '))));
        const QImage picture = screen->grab().toImage(); // a box is opaque
        QCOMPARE(qAlpha(picture.pixel(picture.width() / 2, picture.height() - 12)), 255);
    }

    void aMessageIsLevelWithItsIconAlsoWithALineBreakAtTheEnd()
    {
        const auto middle = [](const char *text) {
            MsgboxDlg box(MSG_QUESTION, QLatin1String(text), nullptr);
            box.setAttribute(Qt::WA_DeleteOnClose, false);
            box.show();
            const QRect label = child<QLabel>(&box, "contentLabel")->geometry();
            const QImage picture = box.grab(label).toImage();
            int top = picture.height(), bottom = 0;
            for (int y = 0; y < picture.height(); ++y)
                for (int x = 0; x < picture.width(); ++x)
                    if (qGray(picture.pixel(x, y)) > 220) {
                        top = qMin(top, y);
                        bottom = y;
                    }
            return label.top() + (top + bottom) / 2;
        };
        constexpr int iconMiddle = 129; // of what its picture shows
        QVERIFY2(qAbs(middle("Leave?") - iconMiddle) <= 3, qPrintable(QString::number(middle("Leave?"))));
        QVERIFY(qAbs(middle("Leave?") - middle("Leave? \n")) <= 1);
    }

    void aRowsTextEndsBeforeTheMarkOfTheBar()
    {
        ImageListWidget list;
        list.setFixedSize(324, 52);
        list.setFont(QFont(QStringLiteral("Arial"), 20));
        list.setIconSize(QSize(32, 32));
        list.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        for (const char *name : {"Everyone Bring a Chair", "Slow Piano"}) {
            list.clear();
            auto *row = new QListWidgetItem(QLatin1String(name), &list);
            row->setSizeHint(list.size());
            QPixmap icon(32, 32);
            icon.fill(Qt::transparent);
            row->setIcon(icon);
            list.show();
            const QImage picture = list.grab().toImage();
            int rightMost = 0;
            for (int x = 0; x < 324; ++x)
                for (int y = 10; y < 42; ++y)
                    rightMost = qGray(picture.pixel(x, y)) > 200 ? x : rightMost;
            QVERIFY2(rightMost > 100 && rightMost < 305, qPrintable(QString::number(rightMost)));
        }
    }

    void theBarOfARowHasNoSeamUnderItsMarquee()
    {
        QWidget window;
        window.setStyleSheet(QStringLiteral("QWidget { background: black; }"));
        ImageListWidget list(&window);
        list.setGeometry(64, 130, 324, 104);
        list.setFont(QFont(QStringLiteral("Arial"), 20));
        list.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        for (const char *name : {"Slow Piano", "Everyone Bring a Chair and Stay"})
            (new QListWidgetItem(QLatin1String(name), &list))->setSizeHint(QSize(324, 52));
        window.resize(400, 240);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        list.setCurrentRow(1);
        list.setFocus();
        for (const double scale : {1.0, 1.067, 1.5, 3.0}) {
            const Row row(QString::number(scale));
            QImage picture((QSizeF(window.size()) * scale).toSize(), QImage::Format_RGB32);
            picture.setDevicePixelRatio(scale);
            window.render(&picture);
            int seams = 0;
            const auto grey = [&](int x, int y) { return qGray(picture.pixel(qRound(x * scale), y)); };
            for (int y = qRound(180 * scale); y < qRound(238 * scale); ++y)
                if (y < 190 * scale || y > 226 * scale) // the text runs between
                    seams += qAbs(grey(100, y) - grey(140, y)) > 20 ? 1 : 0;
            QCOMPARE(seams, 0);
        }
    }

    void theProgressBarIsRoundHoweverShort()
    {
        RoundProgressBar bar;
        bar.resize(236, 12);
        QPalette dark = bar.palette();
        dark.setColor(QPalette::Window, Qt::black);
        bar.setPalette(dark);
        const auto lit = [&](int x, int y) { return QColor(bar.grab().toImage().pixel(x, y)).green() > 150; };
        QVERIFY(!lit(0, 6));
        bar.setValue(3);
        QVERIFY(lit(2, 6) && lit(10, 6));
        QVERIFY(!lit(0, 0) && !lit(0, 11) && !lit(11, 1) && !lit(20, 6));
        bar.setValue(100);
        QVERIFY(lit(233, 6) && !lit(235, 0));
    }

    void aPanelIsDrawnAnewOnlyWhereItsPictureWouldBeScaledUp()
    {
        const std::pair<QString, QString> cases[] = {
            {"QWidget#p {border-image: url(:/images/Welcome_Bg.png);}", "border-radius: 16px"},
            {"QWidget#p {border-image: url(:/images/DialogBox_Bg.png);}", "border-radius: 22px"},
            {"QWidget#p {border-image: url(:/images/Menu_Bg.png);}", "border-radius: 20px"},
            {"border-image: url(:/images/Button_N.png);", QString()}};
        for (const auto &[style, radius] : cases) {
            const Row row(style);
            const QString sharp = SharpPanels::sharpened(style, QStringLiteral("p"));
            QCOMPARE(sharp == style, radius.isEmpty());
            QVERIFY(sharp.contains(radius));
            QWidget panel;
            panel.setObjectName(QStringLiteral("p"));
            panel.setStyleSheet(style);
            panel.ensurePolished();
            // On a screen of the canvas's size; a radio without pictures has no other panels.
            QCOMPARE(panel.styleSheet() == style, radius.isEmpty() || !plainlook::isNeeded());
        }
    }

    // A test of the check itself.
    void aFaultIsSeen()
    {
        struct Case {
            const char *name, *style;
            QRect second;
            int found;
        };
        const Case cases[] = {{"none", "color: white", {100, 200, 300, 40}, 0},
                              {"cut", "color: white", {100, 200, 20, 40}, 1},
                              {"over each other", "color: white", {100, 130, 300, 40}, 1},
                              {"unsafe", "color: white", {40, 200, 300, 40}, 1},
                              {"pale", "color: rgb(90, 90, 90)", {100, 200, 300, 40}, 1}};
        for (const auto &[name, style, second, found] : cases) {
            const Row row(name);
            QWidget window;
            window.setStyleSheet(QStringLiteral("background: black"));
            window.setGeometry(0, 0, 1280, 720);
            QLabel first(QStringLiteral("first words"), &window);
            first.setStyleSheet(QStringLiteral("color: white"));
            first.setGeometry(100, 100, 300, 40);
            QLabel other(QStringLiteral("other words"), &window);
            other.setStyleSheet(QLatin1String(style));
            other.setGeometry(second);
            window.show();
            const QStringList all = lookcheck::faults(&window);
            QVERIFY2(all.size() == found, qPrintable(all.join(QLatin1Char('\n'))));
        }
    }
};

QTEST_MAIN(LookScreensTest)
#include "look_screens_test.moc"
