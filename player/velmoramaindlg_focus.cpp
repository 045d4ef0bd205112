// The player screen: focus ring, keys, and the dialogs that cover it.
#include "app/playerdialog.h"
#include "app/screenfactory.h"
#include "netcommon/remotekeys.h"
#include "player/menuactions.h"
#include "player/velmoramaindlg.h"
#include "ui_velmoramaindlg.h"

#include <QApplication>
#include <QDebug>
#include <QFocusEvent>
#include <QKeyEvent>

using focusring::Position;

namespace {

constexpr QPoint bufferingPlace(404, 358); // under the cover, in line with it
constexpr Position ringPositions[] = {Position::StationList, Position::History,   Position::Menu,   Position::Play,
                                      Position::Next,        Position::ThumbDown, Position::ThumbUp};

} // namespace

void VelmoraMainDlg::wireFocus()
{
    // A button consumes the release of Select, so its click restarts the idle timer.
    for (const Position position : ringPositions)
        if (QPushButton *button = buttonAt(position))
            connect(button, &QPushButton::clicked, this, &VelmoraMainDlg::restartIdleTimer);
    connect(ui->menuBtn, &QPushButton::clicked, this, &VelmoraMainDlg::menuSong);
    connect(ui->playBtn, &QPushButton::clicked, this, &VelmoraMainDlg::pauseSong);
    connect(ui->nextBtn, &QPushButton::clicked, this, &VelmoraMainDlg::nextSong);
    connect(ui->thumbdownBtn, &QPushButton::clicked, this, &VelmoraMainDlg::thumbDownSong);
    connect(ui->thumbupBtn, &QPushButton::clicked, this, &VelmoraMainDlg::thumbUpSong);
    connect(this, &VelmoraMainDlg::signalMenuSong, this, &VelmoraMainDlg::menuSong);
    ui->stationListWidget->installEventFilter(this);
    ui->playListWidget->installEventFilter(this);
    for (const Position position : ringPositions)
        if (QPushButton *button = buttonAt(position))
            button->installEventFilter(this);
}

// ---- ring

ImageListWidget *VelmoraMainDlg::listAt(Position position) const
{
    if (position == Position::StationList)
        return ui->stationListWidget;
    return position == Position::History ? ui->playListWidget : nullptr;
}

QPushButton *VelmoraMainDlg::buttonAt(Position position) const
{
    switch (position) {
    case Position::Menu:
        return ui->menuBtn;
    case Position::Play:
        return ui->playBtn;
    case Position::Next:
        return ui->nextBtn;
    case Position::ThumbDown:
        return ui->thumbdownBtn;
    case Position::ThumbUp:
        return ui->thumbupBtn;
    default:
        return nullptr;
    }
}

void VelmoraMainDlg::moveFocusOnFedbackBtn(bool isLeftToRight)
{
    qDebug("VelmoraMainDlg,moveFocusOnFedbackBtn,position=%d,isLeftToRight=%d.", int(m_focusPosition), isLeftToRight);
    moveFocusTo(focusring::neighbour(m_focusPosition, isLeftToRight));
}

void VelmoraMainDlg::moveFocusTo(Position position)
{
    if (position == m_focusPosition)
        return;
    showUnfocused(m_focusPosition);
    if (ImageListWidget *left = listAt(m_focusPosition))
        left->clearBg(left->currentItem());
    m_focusPosition = position;
    showFocused(position);
}

// The buffering animation keeps the keyboard, and no control looks focused while it shows.
void VelmoraMainDlg::showFocused(Position position)
{
    if (isAnimationShown())
        return;
    if (ImageListWidget *list = listAt(position)) {
        if (position == Position::History)
            ui->stationListWidget->clearFocus();
        list->setFocus();
    } else if (QPushButton *button = buttonAt(position)) {
        button->setFocus(Qt::OtherFocusReason);
        button->setStyleSheet(focusring::buttonStyle(position, true, m_isPaused));
    }
}

void VelmoraMainDlg::showUnfocused(Position position)
{
    if (ImageListWidget *list = listAt(position)) {
        list->clearFocus();
    } else if (QPushButton *button = buttonAt(position)) {
        button->clearFocus();
        button->setStyleSheet(focusring::buttonStyle(position, false, m_isPaused));
    }
}

// The root widget gives the keyboard back to the control that has it now.
void VelmoraMainDlg::showAnimation(const QString &text)
{
    if (ImageListWidget *list = listAt(m_focusPosition))
        list->setFocusDisable(list->currentItem());
    else if (QPushButton *button = buttonAt(m_focusPosition))
        button->setStyleSheet(focusring::buttonStyle(m_focusPosition, false, m_isPaused));
    controlAnimation(false, text);
    // An animation that was hidden a moment ago is still a child; the new one is the last. A device's own library may
    // have no such card.
    const auto cards = findChildren<QWidget *>(QStringLiteral("bufferCard"));
    if (!cards.isEmpty())
        cards.last()->move(bufferingPlace);
    if (screencover::mayLookFocused(cover()))
        showFocused(m_focusPosition);
}

void VelmoraMainDlg::loseFocus(bool fgMsgbox)
{
    qDebug("VelmoraMainDlg,loseFocus,position=%d.", int(m_focusPosition));
    showUnfocused(m_focusPosition);
    VelmoraParentWidget::loseFocus(fgMsgbox);
}

void VelmoraMainDlg::resetFocus(bool fgMsgbox)
{
    qDebug("VelmoraMainDlg,resetFocus,position=%d.", int(m_focusPosition));
    if (!screencover::mayRestoreFocus(cover())) {
        qDebug("VelmoraMainDlg,resetFocus.invalid,return.");
        return;
    }
    showFocused(m_focusPosition);
    VelmoraParentWidget::resetFocus(fgMsgbox);
    if (m_playing_station_info_t.isGetPlaylistWait) {
        m_playing_station_info_t.isGetPlaylistWait = false;
        m_playing_song_info_t.playingSongIndex = -1;
        getPlayListNormal();
    }
}

void VelmoraMainDlg::resetFocus()
{
    qDebug("VelmoraMainDlg,resetFocus,openBoxes=%d,dialogs=%d.", m_openBoxes, int(m_dialogs.size()));
    activateTopScreen();
    resetFocus(false);
}

screencover::Cover VelmoraMainDlg::cover() const
{
    screencover::Cover cover;
    cover.boxes = m_openBoxes;
    cover.isDialogOpen = !m_dialogs.isEmpty();
    cover.isHidden = !isVisible();
    cover.isAnimated = isAnimationShown();
    cover.isFatal = m_isErrorMsg;
    cover.isLeaving = m_isGoing;
    return cover;
}

// A mouse click moves the focus by itself; the ring follows.
bool VelmoraMainDlg::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn && static_cast<QFocusEvent *>(event)->reason() == Qt::MouseFocusReason)
        for (const Position position : ringPositions)
            if (watched == listAt(position) || watched == buttonAt(position))
                moveFocusTo(position);
    return VelmoraParentWidget::eventFilter(watched, event);
}

void VelmoraMainDlg::showEvent(QShowEvent *event)
{
    VelmoraParentWidget::showEvent(event);
    if (!m_hasBeenShown) {
        m_hasBeenShown = true;
        emit signalMovePlaybackWidget();
    }
    resetFocus(false);
}

// ---- message boxes

int VelmoraMainDlg::showMsgbox(int type, const QString &text)
{
    const QPointer<VelmoraMainDlg> self(this);
    ++m_openBoxes;
    const int result = VelmoraParentWidget::showMsgbox(type, text);
    if (!self)
        return 0;
    --m_openBoxes;
    resetFocus();
    return result;
}

void VelmoraMainDlg::activateTopScreen()
{
    switch (screencover::keyOwner(cover())) {
    case screencover::KeyOwner::Unchanged:
        break;
    case screencover::KeyOwner::Dialog:
        m_dialogs.last()->activateWindow();
        break;
    case screencover::KeyOwner::Player:
        activateWindow();
        break;
    case screencover::KeyOwner::OtherScreen:
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (widget != this && widget->isVisible() && qobject_cast<VelmoraParentWidget *>(widget))
                widget->activateWindow();
        break;
    }
}

// ---- keys

void VelmoraMainDlg::keyPressEvent(QKeyEvent *event)
{
    qDebug("VelmoraMainDlg,keyPressEvent,key=%0x", static_cast<unsigned>(event->key()));
    if (!fgActionInvalid()) {
        qDebug("VelmoraMainDlg,keyPressEvent,action invalid");
        return;
    }
    const QPointer<VelmoraMainDlg> self(this);
    switch (event->key()) {
    case Qt::Key_TopMenu:
        qDebug("VelmoraMainDlg,keyPressEvent,top menu");
        break;
    case Qt::Key_MediaPlay:
        emit signalPlayBtn();
        break;
    case Qt::Key_MediaNext:
        emit signalNextBtn();
        break;
    case Qt::Key_MediaStop:
        emit signalStopBtn();
        break;
    case Qt::Key_Pause:
        emit signalPauseBtn();
        break;
    default:
        break;
    }
    if (self)
        QDialog::keyPressEvent(event);
}

void VelmoraMainDlg::keyReleaseEvent(QKeyEvent *event)
{
    qDebug("VelmoraMainDlg,keyReleaseEvent,key=%0x", static_cast<unsigned>(event->key()));
    runTimer();
    if (!fgActionInvalid()) {
        qDebug("VelmoraMainDlg,keyReleaseEvent,action invalid");
        return;
    }
    const QPointer<VelmoraMainDlg> self(this);
    switch (event->key()) {
    case Qt::Key_Back:
        qDebug("VelmoraMainDlg,keyReleaseEvent,dothing");
        break;
    case Qt::Key_Select:
        if (m_focusPosition != Position::StationList)
            break;
        if (!m_strCurrentStationToken.isEmpty() &&
            ui->stationListWidget->currentRow() == m_playing_station_info_t.selectedStationIndex)
            qDebug("VelmoraMainDlg,keyReleaseEvent,it plays already");
        else
            emit signalStationListWidgetItemClicked();
        break;
    case Qt::Key_Left:
        moveFocusOnFedbackBtn(false);
        break;
    case Qt::Key_Right:
        moveFocusOnFedbackBtn(true);
        break;
    case netcommon::greenKey:
        emit signalThumbUpSong();
        break;
    case netcommon::redKey:
        emit signalThumbDownSong();
        break;
    default:
        break;
    }
    if (self)
        QDialog::keyReleaseEvent(event);
}

// ---- menu and about

void VelmoraMainDlg::openDialog(PlayerDialog *dialog, const QPoint &place, void (VelmoraMainDlg::*ended)())
{
    loseFocus(false);
    m_dialogs.append(dialog);
    showShadow(true);
    connect(dialog, &PlayerDialog::signalDestroyedWindow, this, [this, dialog, ended] {
        m_dialogs.removeOne(dialog);
        if (m_dialogs.isEmpty())
            showShadow(false);
        (this->*ended)();
    });
    dialog->move(place);
    dialog->show();
}

void VelmoraMainDlg::menuSong()
{
    qDebug("VelmoraMainDlg,menuSong...");
    if (!fgActionInvalid()) {
        qDebug("VelmoraMainDlg,menuSong,action invalid");
        return;
    }
    stopTimer();
    TrackMenuDialog *menu = ScreenFactory::instance()->trackMenu(this);
    connect(menu, &TrackMenuDialog::itemCliecked, this, &VelmoraMainDlg::hanleMenuOp);
    openDialog(menu, QPoint(450, 215), &VelmoraMainDlg::resetFocus);
}

void VelmoraMainDlg::showAboutVelmora()
{
    qDebug("VelmoraMainDlg,showAboutVelmora...");
    openDialog(ScreenFactory::instance()->about(this), QPoint(240, 110), &VelmoraMainDlg::resetFocus);
}

void VelmoraMainDlg::hanleMenuOp(int index)
{
    using menuactions::Action;
    qDebug("VelmoraMainDlg,hanleMenuOp,index=%d.", index);
    runTimer();
    switch (menuactions::ofIndex(index)) {
    case Action::None:
        break;
    case Action::BookmarkArtist:
        emit signalAddArtistBookmark();
        break;
    case Action::BookmarkSong:
        emit signalAddSongBookmark();
        break;
    case Action::Sleep:
        emit signalSleepSong();
        break;
    case Action::CreateStation:
        emit signalCreateStation();
        break;
    case Action::DeleteStation:
        emit signalDeleteStation();
        break;
    case Action::RenameStation:
        emit signalRenameStation();
        break;
    case Action::SignOut:
        signout();
        break;
    case Action::Exit:
        leaveAsWished();
        break;
    case Action::IdlePrompt:
        NohandleTimeOut();
        break;
    case Action::Explain:
        emit signalExplainTrack();
        break;
    }
}
