// Text entry with the real keyboard: keys go to the field that holds the focus, which keeps none that are not its own.

#include "account/signindlg.h"
#include "screens/accountfixture.h"
#include "station/createstationdlg.h"
#include "station/renamestationdlg.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <virtualkb/qtvirtualkbdlg.h>

using namespace screentest;

class TextEntryTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { registerTypes(); }

    void keysOnTheFieldDriveTheKeyboard()
    {
        ScreenFixture fixture;
        CreateStationDlg dialog(1);
        dialog.setAttribute(Qt::WA_DeleteOnClose, false);
        dialog.show();
        auto *field = child<QLineEdit>(&dialog, "searchLabelLineEdit");
        for (int code : {int(Select), int(Right), int(Select), int(Down), int(Select)})
            key(field, code);
        QCOMPARE(field->text(), QStringLiteral("qws"));
        key(field, Left);
        key(field, Select);
        QCOMPARE(field->text(), QStringLiteral("qwsa")); // the arrows moved no cursor
        for (const QChar letter : QString::fromLatin1(" caf\xe9")) {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
            QCoreApplication::sendEvent(field, &press);
        }
        QCOMPARE(field->text(), QString::fromUtf8("qwsa café"));
    }

    void backOnTheFieldReachesItsDialog()
    {
        ScreenFixture fixture;
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_SELECT_USER);
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_SELECT_USER);
        VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_SELECT_USER);
        QList<QPointer<VelmoraParentWidget>> dialogs = {new SignInDlg, new CreateStationDlg(1),
                                                        new RenameStationDlg("n", "t")};
        const char *const fields[] = {"emailLineEdit", "searchLabelLineEdit", "stationNameLineEdit"};
        for (int i = 0; i < dialogs.size(); ++i) {
            dialogs.at(i)->show();
            auto *field = child<QLineEdit>(dialogs.at(i), fields[i]);
            field->setReadOnly(false);
            field->setFocus();
            key(field, Back);
            QTRY_VERIFY(!dialogs.at(i));
        }
        QCOMPARE(fixture.screens().made().size(), 3);
    }

    void noKeyReachesTheKeyboardUnderABox()
    {
        ScreenFixture fixture;
        CreateStationDlg dialog(1);
        dialog.setAttribute(Qt::WA_DeleteOnClose, false);
        dialog.show();
        auto *field = child<QLineEdit>(&dialog, "searchLabelLineEdit");
        const QString before = field->text();
        QTimer::singleShot(0, &dialog, [&] { // runs in the box's own loop
            key(&dialog, Select);
            key(field, Select);
        });
        destroyNextBox(&dialog);
        dialog.showMsgbox(MSG_WARNING, "words");
        QCOMPARE(field->text(), before);
        key(&dialog, Select);
        QCOMPARE(field->text(), QStringLiteral("q"));
    }
};

QTEST_MAIN(TextEntryTest)
#include "textentry_test.moc"
