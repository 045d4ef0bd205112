#include "account/selectuserdlg.h"

#include "account/afterlogin.h"
#include "account/deviceactivation.h"
#include "app/screenfactory.h"
#include "service/deviceidentity.h"
#include "service/velmoralogin.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"
#include "service/wshandle.h"
#include "service/wsreply.h"
#include "ui_selectuserdlg.h"

#include <QDebug>
#include <QKeyEvent>
#include <QStyleOptionButton>
#include <QStylePainter>

namespace {

QString largeButton(const char *picture, int padding)
{
    return QStringLiteral("border-image: url(:/images/%1.png);\ncolor: rgb(255, 255, 255);\ntext-align : left;\n"
                          "padding: %2px;")
        .arg(QLatin1String(picture))
        .arg(padding);
}

QString deleteLook(const char *icon)
{
    return QStringLiteral("border-image: url(:/images/SIGN_IN_LIST_DELET_BG.png);\nimage: url(:/images/%1.png);\n\n")
        .arg(QLatin1String(icon));
}

constexpr int newUserPadding = 80;
constexpr int rowPadding = 120;
constexpr int rowTextEnd = 24; // between a long name and the right edge of its row
constexpr int newUserDelayMs = 100;

} // namespace

SelectUserDlg::SelectUserDlg(int loginState, QWidget *parent)
    : VelmoraParentWidget(parent)
    , ui(new Ui::SelectUserDlg)
    , m_login(new VelmoraLogin(this))
{
    qDebug("New SelectUserDlg...");
    ui->setupUi(this);
    for (int row = 1; row <= maxAccounts; ++row) {
        rowIcon(row)->setAttribute(Qt::WA_TransparentForMouseEvents);
        rowIcon(row)->raise();
        rowButton(row)->setStyle(&m_style);
        deleteButton(row)->setStyle(&m_style);
        deleteButton(row)->setAccessibleName(tr("Delete"));
        rowButton(row)->installEventFilter(this);
        deleteButton(row)->installEventFilter(this);
        connect(rowButton(row), &QPushButton::clicked, this, &SelectUserDlg::loadingToMainDlg);
        // pressed, not clicked (deliberate)
        connect(deleteButton(row), &QPushButton::pressed, this, &SelectUserDlg::deleteUser);
    }
    ui->newUserBtn->setStyle(&m_style);
    ui->newUserBtn->installEventFilter(this);
    ui->newUserIconLabel->setAttribute(Qt::WA_TransparentForMouseEvents);
    ui->newUserIconLabel->raise();
    initRecordUserInfo(QString());

    connect(ui->newUserBtn, &QPushButton::clicked, this, &SelectUserDlg::newUser);
    VelmoraWebService *service = VelmoraWebService::getInstance();
    connect(service, &VelmoraWebService::signalGenerateDeviceActivationCodeDone, this,
            &SelectUserDlg::generateDeviceActivationCodeDone);
    connect(service, &VelmoraWebService::signalDisassociateDeviceDone, this, &SelectUserDlg::deleteUserDone);
    connect(m_login, &VelmoraLogin::signaVelmoraLoginFatalError, this, &SelectUserDlg::displayError);
    connect(m_login, &VelmoraLogin::signalGetStationListDone, this, &SelectUserDlg::enterVelmoraMainDlg);
    connect(m_login, &VelmoraLogin::signalLoginWithDeviceIDDoneError, this, &SelectUserDlg::handleDeviceError);

    if (loginState == 0 || m_userCount == 0)
        QTimer::singleShot(newUserDelayMs, this, &SelectUserDlg::newUser);
    ui->returnContentLabel->hide();
    ui->returnIconLabel->hide();
    qDebug("New SelectUserDlg... ok");
}

SelectUserDlg::~SelectUserDlg()
{
    // The buttons draw with m_style, so they are deleted before it.
    qDeleteAll(findChildren<QPushButton *>());
    qDebug("del SelectUserDlg..");
}

QPushButton *SelectUserDlg::rowButton(int row) const
{
    QPushButton *const buttons[] = {ui->userListBtn_1, ui->userListBtn_2, ui->userListBtn_3, ui->userListBtn_4,
                                    ui->userListBtn_5};
    return buttons[row - 1];
}

QPushButton *SelectUserDlg::deleteButton(int row) const
{
    QPushButton *const buttons[] = {ui->userListDelBtn_1, ui->userListDelBtn_2, ui->userListDelBtn_3,
                                    ui->userListDelBtn_4, ui->userListDelBtn_5};
    return buttons[row - 1];
}

QLabel *SelectUserDlg::rowIcon(int row) const
{
    QLabel *const icons[] = {ui->userListIcon_1, ui->userListIcon_2, ui->userListIcon_3, ui->userListIcon_4,
                             ui->userListIcon_5};
    return icons[row - 1];
}

QPushButton *SelectUserDlg::control(int focusIndex) const
{
    if (focusIndex == 0)
        return ui->newUserBtn;
    const int row = (focusIndex + 1) / 2;
    if (focusIndex < 0 || row > m_userCount)
        return nullptr;
    return focusIndex % 2 == 1 ? rowButton(row) : deleteButton(row);
}

void SelectUserDlg::dress(int focusIndex, bool isFocused)
{
    QPushButton *button = control(focusIndex);
    if (!button)
        return;
    const char *large = isFocused ? "sign_user_btn_large_p" : "sign_user_btn_large_n";
    if (focusIndex == 0)
        button->setStyleSheet(largeButton(large, newUserPadding));
    else if (focusIndex % 2 == 1)
        button->setStyleSheet(largeButton(large, rowPadding));
    else
        button->setStyleSheet(deleteLook(isFocused ? "SIGN_IN_LIST_ICON_DELETE_S" : "SIGN_IN_LIST_ICON_DELETE_N"));
}

void SelectUserDlg::moveFocus(int focusIndex)
{
    if (!control(focusIndex))
        return;
    dress(m_focusIndex, false);
    m_focusIndex = focusIndex;
    dress(m_focusIndex, true);
    control(m_focusIndex)->setFocus(Qt::OtherFocusReason);
}

void SelectUserDlg::initRecordUserInfo(const QString &strFocus)
{
    qDebug().noquote() << QStringLiteral("SelectUserDlg,initRecordUserInfo,strFocus=") + strFocus;
    VelmoraSettings settings = deviceSettings();
    QString focusName = strFocus;
    if (strFocus.isEmpty()) {
        qDebug("SelectUserDlg,initRecordUserInfo,read from Seetings.");
        focusName = settings.getLastLogin().userName;
    } else {
        qDebug("SelectUserDlg,initRecordUserInfo,read from Input.");
    }
    const QStringList names = settings.getAllUserName();
    // An activation can leave a sixth account in the file; there are five rows.
    m_userNames = names.mid(0, maxAccounts);
    m_userCount = int(m_userNames.size());
    qDebug("SelectUserDlg,m_userCount=%d.", m_userCount);
    for (int row = 1; row <= maxAccounts; ++row) {
        const bool isUsed = row <= m_userCount;
        const QString name = isUsed ? names.at(row - 1) : QString();
        rowButton(row)->setText(name);
        rowButton(row)->setVisible(isUsed);
        deleteButton(row)->setVisible(isUsed);
        rowIcon(row)->setVisible(isUsed);
        dress(2 * row - 1, false);
        dress(2 * row, false);
    }
    dress(0, false);
    const int found = int(names.indexOf(focusName)) + 1;
    m_focusIndex = 0;
    moveFocus(found >= 1 && found <= m_userCount ? 2 * found - 1 : m_userCount > 0 ? 1 : 0);
}

void SelectUserDlg::openSignIn(const QString &account)
{
    retire(m_login);
    ScreenFactory *factory = ScreenFactory::instance();
    recordHistroyUiType(VELMORA_UI_TYPE_SELECT_USER);
    if (account.isEmpty())
        factory->signIn()->show();
    else
        factory->signInFor(account);
}

void SelectUserDlg::loadingToMainDlg()
{
    qDebug("SelectUserDlg,loadingToMainDlg...");
    if (m_focusIndex % 2 == 0)
        return;
    const QString userName = focusUser();
    AccountRecord login;
    {
        VelmoraSettings settings = deviceSettings();
        settings.setLastLogin(userName);
        login = settings.getLastLogin();
        settings.setLastSlot(login.password);
    }
    if (login.password.isEmpty()) {
        qDebug("SelectUserDlg,loadingToMainDlg password is null...");
        openSignIn(userName);
        return;
    }
    controlAnimation(false, tr("Please wait..."));
    m_login->userLoginWithDeviceID();
}

void SelectUserDlg::newUser()
{
    if (isFatalMessageUp())
        return;
    setMsgBoxInfoType(LABELS_YES_NO);
    const QPointer<SelectUserDlg> guard(this);
    const int answer = showMsgbox(MSG_QUESTION, tr("Do you already have a Velmora account ? "));
    if (!guard || isBoxDestroyed() || isEixt || m_isErrorMsg)
        return;
    // With all slots in use an activation would fail as well: the same message.
    const bool isFull = deviceSettings().getAllUserName().size() >= maxAccounts;
    if (isFull)
        showWarning(tr("We only keep max 5 accounts,you could delete one to continue."));
    else if (answer == 1)
        openSignIn(QString());
    else
        generateDeviceActivationCode();
}

void SelectUserDlg::generateDeviceActivationCode()
{
    qDebug("SelectUserDlg,generateDeviceActivationCode...");
    const auto result = deviceactivation::requestCode();
    if (!result)
        return;
    if (*result == VLM_WS_ERR_OK) {
        controlAnimation(false, tr("Please wait..."));
        return;
    }
    showWarning(tr("Can not generate device activation code!"));
}

void SelectUserDlg::generateDeviceActivationCodeDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    const auto code = deviceactivation::takeCode(this, h_handle, e_ret);
    if (!code) {
        showWarning(messageFor(e_ret, tr("Generate device activation code failed,you could try again!")));
        return;
    }
    retire(m_login);
    VelmoraParentWidget *screen = ScreenFactory::instance()->activation(deviceactivation::codeLine(code->code),
                                                                        deviceactivation::pageLine(code->url));
    recordHistroyUiType(VELMORA_UI_TYPE_SELECT_USER);
    screen->show();
    qDebug("SelectUserDlg,generateDeviceActivationCodeDone.2..");
}

void SelectUserDlg::deleteUser()
{
    qDebug("SelectUserDlg,deleteUser...");
    if (m_focusIndex == 0 || m_focusIndex % 2 == 1)
        return;
    char mac[7] = {};
    const VLM_WS_EXT_ERRCODE_T macResult = VelmoraWebService::getInstance()->getMac(mac, sizeof mac);
    if (macResult != VLM_WS_ERR_OK) {
        qDebug("VelmoraMainDlg,signout,getMac failed,e_ret=%d.", int(macResult));
        return;
    }
    const QString userName = focusUser();
    if (isFatalMessageUp())
        return;
    setMsgBoxInfoType(LABELS_YES_NO);
    const QPointer<SelectUserDlg> guard(this);
    const int answer = showMsgbox(MSG_QUESTION, tr("Are you sure you want to delete the user: ") + userName);
    if (!guard)
        return;
    deleteButton(focusRow())->setDown(false); // the box got its key release
    if (answer != 1 || isBoxDestroyed() || isEixt || m_isErrorMsg)
        return;
    QString slot;
    {
        VelmoraSettings settings = deviceSettings();
        slot = settings.getPassword(userName);
    }
    m_deletedUser = userName;
    controlAnimation(false, tr("Delete User..."));
    HANDLE_T handle = 0;
    const VLM_WS_EXT_ERRCODE_T result = VelmoraWebService::getInstance()->disassociateDevice(
        deviceIdentity(mac, slot).toLatin1().constData(), false, nullptr, &handle);
    if (result != VLM_WS_ERR_OK)
        deleteUserDone(0, result, nullptr);
}

void SelectUserDlg::deleteUserDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *)
{
    {
        const WsHandle owner(h_handle);
    }
    controlAnimation(true);
    if (e_ret != VLM_WS_ERR_OK && e_ret != VLM_WS_ERR_DEVICE_NOT_FOUND) {
        qDebug("VelmoraMainDlg,signout,disassociateDevice failed,e_ret=%d.", int(e_ret));
        showWarning(
            messageFor(e_ret, tr("Disassociate device failed because of network error. please try again later!")));
        return;
    }
    {
        VelmoraSettings settings = deviceSettings();
        settings.deleteAccount(m_deletedUser);
    }
    m_deletedUser.clear();
    initRecordUserInfo(QString());
}

void SelectUserDlg::enterVelmoraMainDlg(HANDLE_T h_handle)
{
    qDebug("SelectUserDlg,enterVelmoraMainDlg...");
    WsHandle handle(h_handle);
    if (isFatalMessageUp())
        return;
    qDebug("SelectUserDlg,enterVelmoraMainDlg,station count=%d...", wsreply::StationList(h_handle).count());
    afterlogin::enterPlayer(this, m_login, handle.take());
}

void SelectUserDlg::displayError(VLM_WS_EXT_ERRCODE_T e_ret)
{
    qDebug("SelectUserDlg,displayError,ret=%d.", int(e_ret));
    controlAnimation(true);
    showWarning(messageFor(e_ret, tr("Incorrect login,please try again!")));
}

void SelectUserDlg::handleDeviceError()
{
    qDebug("SelectUserDlg,loadingToMainDlg password is null...");
    openSignIn(m_focusIndex % 2 == 1 ? focusUser() : QString());
}

void SelectUserDlg::loseFocus(bool fgMsgbox)
{
    qDebug("SelectUserDlg,loseFocus...");
    dress(m_focusIndex, false);
    if (QPushButton *button = control(m_focusIndex))
        button->clearFocus();
    VelmoraParentWidget::loseFocus(fgMsgbox);
}

void SelectUserDlg::resetFocus(bool fgMsgbox)
{
    qDebug("SelectUserDlg,resetFocus...");
    moveFocus(m_focusIndex);
    VelmoraParentWidget::resetFocus(fgMsgbox);
}

void SelectUserDlg::keyPressEvent(QKeyEvent *event)
{
    qDebug("SelectUserDlg,keyPressEvent,event->key=%0x", event->key());
    if (event->key() == Qt::Key_Back)
        qDebug("SelectUserDlg,keyPressEvent.recv Qt::Key_Back.");
    if (event->key() == Qt::Key_TopMenu) {
        qDebug("SelectUserDlg,keyPressEvent.recv Qt::Key_TopMenu,do nothing.");
        return;
    }
    VelmoraParentWidget::keyPressEvent(event);
}

void SelectUserDlg::keyReleaseEvent(QKeyEvent *event)
{
    qDebug("SelectUserDlg,keyReleaseEvent,event->key=%0x", event->key());
    runTimer();
    if (!fgActionInvalid()) {
        qDebug("SelectUserDlg,keyReleaseEvent,action invalid,return.");
        return;
    }
    const int row = focusRow();
    switch (event->key()) {
    case Qt::Key_Back:
        qDebug("SelectUserDlg,keyReleaseEvent.recv Qt::Key_Back.");
        emit signalReturnBtn();
        return;
    case Qt::Key_Left:
        if (m_focusIndex != 0 && m_focusIndex % 2 == 0)
            moveFocus(m_focusIndex - 1);
        return;
    case Qt::Key_Right:
        if (m_focusIndex % 2 == 1)
            moveFocus(m_focusIndex + 1);
        return;
    case Qt::Key_Down:
        moveFocus(m_focusIndex == 0 ? 1 : m_focusIndex + 2); // stays where no row follows
        return;
    case Qt::Key_Up:
        if (row > 1)
            moveFocus(m_focusIndex - 2);
        else if (row == 1 && m_userCount < maxAccounts) // with five accounts there is nothing to add (deliberate)
            moveFocus(0);
        return;
    default:
        VelmoraParentWidget::keyReleaseEvent(event);
    }
}

// Replaces the button's own painting, which would cut a long name without dots and far from the row's right edge.
void SelectUserDlg::paintRow(QPushButton *button) const
{
    QStylePainter painter(button);
    QStyleOptionButton option;
    option.initFrom(button);
    option.state |= button->isDown() ? QStyle::State_Sunken : QStyle::State_Raised;
    painter.drawControl(QStyle::CE_PushButton, option); // the background: the option has no text
    const QRect room = button->rect().adjusted(rowPadding, 0, -rowTextEnd, 0);
    const QString name = button->fontMetrics().elidedText(button->text(), Qt::ElideRight, room.width());
    painter.setPen(button->palette().color(QPalette::ButtonText));
    const int direction = name.isRightToLeft() ? Qt::TextForceRightToLeft : Qt::TextForceLeftToRight;
    const int place = int(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);
    painter.drawText(room, place | Qt::TextSingleLine | direction, name);
}

bool SelectUserDlg::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && watched->objectName().startsWith(QLatin1String("userListBtn_"))) {
        paintRow(static_cast<QPushButton *>(watched));
        return true;
    }
    // The slots act on the focused row, so a mouse press moves the focus before it becomes a click.
    if (event->type() == QEvent::MouseButtonPress) {
        for (int index = 0; index <= 2 * m_userCount; ++index) {
            if (control(index) == watched)
                moveFocus(index);
        }
    }
    return VelmoraParentWidget::eventFilter(watched, event);
}
