// Text entry with the real keyboard: a key goes to the focused field, which passes on the keys that it does not use.

#include "account/signindlg.h"
#include "screens/accountfixture.h"
#include "station/createstationdlg.h"
#include "station/renamestationdlg.h"

#include <QLineEdit>
#include <virtualkb/qtvirtualkbdlg.h>

using namespace screentest;

class TextEntryTest : public QObject {
    Q_OBJECT
private slots:
    void backOnTheFieldReachesItsDialog()
    {
        ScreenFixture fixture;
        const QPointer<VelmoraParentWidget> dialogs[] = {new SignInDlg, new CreateStationDlg(1),
                                                         new RenameStationDlg("n", "t")};
        for (const auto &dialog : dialogs) {
            VelmoraParentWidget::recordHistroyUiType(VELMORA_UI_TYPE_SELECT_USER);
            dialog->show();
            auto *field = dialog->findChild<QLineEdit *>();
            field->setReadOnly(false);
            field->setFocus();
            key(field, Back);
            QTRY_VERIFY(!dialog);
        }
        QCOMPARE(fixture.screens().made().size(), 3);
    }

    void noKeyReachesTheKeyboardUnderABox()
    {
        ScreenFixture fixture;
        const auto dialog = fixture.show(new CreateStationDlg(1));
        auto *field = child<QLineEdit>(dialog, "searchLabelLineEdit");
        const QString before = field->text();
        QTimer::singleShot(0, dialog, [&] { // runs in the box's own loop
            key(dialog, Select);
            key(field, Select);
        });
        destroyNextBox(dialog);
        dialog->showMsgbox(MSG_WARNING, "words");
        QCOMPARE(field->text(), before);
        key(dialog, Select);
        QCOMPARE(field->text(), QStringLiteral("q"));
    }
};

QTEST_MAIN(TextEntryTest)
#include "textentry_test.moc"
