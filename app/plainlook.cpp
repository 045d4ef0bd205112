#include "app/plainlook.h"

#include <QFile>

#include <algorithm>

namespace plainlook {

namespace {

// The last four carry black text, the others white text.
const char *const surfaces[] = {"Main_Bg", "Screen_Bg", "Welcome_Bg",     "DialogBox_Bg", "Menu_Bg",
                                "Btn_F",   "Button_F",  "Button_Focus_H", "FocusBar",     "InputBox_Focus_H"};

} // namespace

bool isNeeded()
{
    return !std::all_of(std::begin(surfaces), std::end(surfaces), [](const char *name) {
        return QFile::exists(QStringLiteral(":/images/%1.png").arg(QLatin1String(name)));
    });
}

QString styleSheet()
{
    return QStringLiteral(R"(
QDialog, QFrame#velmoraMainFrame { background-color: #1C0F29; }
MenuDlg, MsgboxDlg, AboutDlg, WhyDlg { background-color: transparent; }
QLabel, QPushButton { color: rgb(255, 255, 255); }
QPushButton { background-color: #34204A; outline: none; }
QPushButton:focus { background-color: #FFB930; }
SelectUserDlg QPushButton:focus { background-color: #5A3A74; border: 5px solid rgb(255, 180, 0); }
SelectUserDlg QPushButton#newUserBtn:focus { color: rgb(255, 255, 255); }
ImageListWidget { background: transparent; border: none; outline: 0; color: rgb(255, 255, 255); }
ImageListWidget::item:selected { background-color: #4A2F60; color: rgb(255, 255, 255); }
ImageListWidget::item:selected:focus { background-color: #FFB930; color: rgb(0, 0, 0); }
QPushButton#playBtn { qproperty-text: "Play"; }
QPushButton#nextBtn { qproperty-text: "Next"; }
QPushButton#thumbdownBtn { qproperty-text: "Down"; }
QPushButton#thumbupBtn { qproperty-text: "Up"; }
QPushButton[objectName^="userListDelBtn"] { qproperty-text: "Delete"; font: 12pt "Arial"; }
QLineEdit { background-color: #FFF8EA; padding: 0px 18px; border: 4px solid rgb(255, 180, 0); }
QLineEdit:read-only, QLineEdit[styleSheet*="InputBox_Normal"] {
    background-color: #170B22; padding: 0px 20px; border: 2px solid #7D6298; }
)");
}

} // namespace plainlook
