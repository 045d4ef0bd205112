#include "station/menudlg.h"

#include "app/playerport.h"
#include "netcommon/networknotify.h"
#include "ui_menudlg.h"
#include "widgets/roundcorners.h"

#include <QDebug>
#include <QKeyEvent>
#include <QPointer>
#include <QTimer>

namespace {

constexpr int closeAfterMs = 32'400'000; // nine hours

} // namespace

MenuDlg::MenuDlg(QWidget *parent)
    : TrackMenuDialog(parent)
    , ui(std::make_unique<Ui::MenuDlg>())
    , m_closeTimer(new QTimer(this))
{
    qDebug("new MenuDlg");
    ui->setupUi(this);
    showRoundCorners(this);
    QPushButton *const entries[entryCount] = {
        ui->bookmarkArtisteBtn, ui->bookmarkSongBtn,  ui->sleepBtn,   ui->whyBtn,  ui->createstationBtn,
        ui->deletestationBtn,   ui->renamestationBtn, ui->signoutBtn, ui->exitBtn, ui->closeBtn};
    std::copy(std::begin(entries), std::end(entries), std::begin(m_entries));
    ui->bookmarkArtisteBtn->setFocus(Qt::OtherFocusReason);

    connect(this, &MenuDlg::signalRetuenBtn, this, &MenuDlg::destroyedWindow);
    // The player screen beneath reacts to the network; the menu does not.
    disconnect(netcommon::NetworkNotify::getInstance(), &netcommon::NetworkNotify::signalSendNetowrkEvent, this,
               nullptr);

    connect(ui->bookmarkArtisteBtn, &QPushButton::clicked, this, &MenuDlg::menudoBookmarkArtist);
    connect(ui->bookmarkSongBtn, &QPushButton::clicked, this, &MenuDlg::menudoBookmarkSong);
    connect(ui->sleepBtn, &QPushButton::clicked, this, &MenuDlg::menusleep);
    connect(ui->whyBtn, &QPushButton::clicked, this, &MenuDlg::menuwhy);
    connect(ui->createstationBtn, &QPushButton::clicked, this, &MenuDlg::menucreatestation);
    connect(ui->deletestationBtn, &QPushButton::clicked, this, &MenuDlg::menudeletestation);
    connect(ui->renamestationBtn, &QPushButton::clicked, this, &MenuDlg::menurenamestation);
    connect(ui->signoutBtn, &QPushButton::clicked, this, &MenuDlg::menusignout);
    connect(ui->exitBtn, &QPushButton::clicked, this, &MenuDlg::menuexitvelmora);
    connect(ui->closeBtn, &QPushButton::clicked, this, &MenuDlg::destroyedWindow);

    connect(m_closeTimer, &QTimer::timeout, this, &MenuDlg::handletimer);
    runtimer();
}

MenuDlg::~MenuDlg()
{
    qDebug("del MenuDlg");
    delete m_closeTimer;
    emit signalDestroyedWindow();
}

// ---- entries

// The receiver may run a message box, and this menu may be deleted with its parent meanwhile.
void MenuDlg::choose(const char *slot, int index)
{
    qDebug("MenuDlg,%s,index=%d.", slot, index);
    const QPointer<MenuDlg> self(this);
    close();
    emit itemCliecked(index);
    delete self.data();
}

void MenuDlg::menudoBookmarkArtist()
{
    choose("menudoBookmarkArtist", 0);
}

void MenuDlg::menudoBookmarkSong()
{
    choose("menudoBookmarkSong", 1);
}

void MenuDlg::doWhyPlaying()
{
    choose("doWhyPlaying", 2);
}

void MenuDlg::menusleep()
{
    choose("menusleep", 2);
}

void MenuDlg::menucreatestation()
{
    choose("menucreatestation", 3);
}

void MenuDlg::menudeletestation()
{
    choose("menudeletestation", 4);
}

void MenuDlg::menurenamestation()
{
    choose("menurenamestation", 5);
}

// Only closed here, which deletes it later (deliberate): signing out closes the player screen, the menu's parent.
void MenuDlg::menusignout()
{
    qDebug("MenuDlg,menusignout,index=6.");
    close();
    emit itemCliecked(6);
}

void MenuDlg::menuexitvelmora()
{
    choose("menuexitvelmora", 7);
}

void MenuDlg::menuwhy()
{
    choose("menuwhy", 9);
}

void MenuDlg::destroyedWindow()
{
    qDebug("MenuDlg,destroyedWindow...");
    if (PlayerPort *player = PlayerPort::existing())
        player->restartIdleTimer();
    close();
}

// ---- close timer

void MenuDlg::runtimer()
{
    qDebug("MenuDlg,runtimer...");
    if (m_closeTimer->isActive())
        m_closeTimer->stop();
    m_closeTimer->start(closeAfterMs);
}

void MenuDlg::handletimer()
{
    qDebug("MenuDlg,handletimer...");
    destroyedWindow();
    emit itemCliecked(8);
}

// ---- keys and focus

void MenuDlg::keyPressEvent(QKeyEvent *event)
{
    qDebug("MenuDlg,keyPressEvent,key=%0x", static_cast<unsigned>(event->key()));
    if (!fgActionInvalid()) {
        qDebug("MenuDlg,keyPressEvent,action invalid");
        return;
    }
    if (event->key() == Qt::Key_Back)
        emit signalRetuenBtn();
    QDialog::keyPressEvent(event);
}

void MenuDlg::keyReleaseEvent(QKeyEvent *event)
{
    qDebug("MenuDlg,keyReleaseEvent,key=%0x", static_cast<unsigned>(event->key()));
    runtimer();
    if (!fgActionInvalid()) {
        qDebug("MenuDlg,keyReleaseEvent,action invalid");
        return;
    }
    if (event->key() == Qt::Key_Down)
        moveHighlight(1);
    else if (event->key() == Qt::Key_Up)
        moveHighlight(-1);
    QDialog::keyReleaseEvent(event);
}

void MenuDlg::moveHighlight(int step)
{
    setHighlighted(m_position, false);
    m_position = (m_position + step + entryCount) % entryCount;
    m_entries[m_position]->setFocus(Qt::OtherFocusReason);
    setHighlighted(m_position, true);
}

void MenuDlg::setHighlighted(int position, bool isHighlighted)
{
    m_entries[position]->setStyleSheet(isHighlighted
                                           ? QStringLiteral("border-image: url(:/images/Button_Focus_H.png);\n"
                                                            "color: rgb(0, 0,0);")
                                           : QStringLiteral("border-image: url(:/images/Button_Normal_H.png);\n"
                                                            "color: rgb(255, 255,255);"));
}

void MenuDlg::loseFocus(bool fgMsgbox)
{
    qDebug("MenuDlg,loseFocus,position=%d.", m_position);
    m_entries[m_position]->clearFocus();
    TrackMenuDialog::loseFocus(fgMsgbox);
}

void MenuDlg::resetFocus(bool fgMsgbox)
{
    qDebug("MenuDlg,resetFocus,position=%d.", m_position);
    m_entries[m_position]->setFocus(Qt::OtherFocusReason);
    setHighlighted(m_position, true);
    TrackMenuDialog::resetFocus(fgMsgbox);
}
