#pragma once

#include "app/velmoraparentwidget.h"

#include <viewcomponent/mcommonstyle.h>

#include <memory>

class QLabel;
class QPushButton;
class VelmoraLogin;

namespace Ui {
class SelectUserDlg;
}

// Account selection: at most five accounts of this device, to choose or to delete, and a button for a new one.
class SelectUserDlg : public VelmoraParentWidget {
    Q_OBJECT
public:
    // loginState: 0 no account yet, 1 accounts exist, 2 back through the history.
    explicit SelectUserDlg(int loginState, QWidget *parent = nullptr);
    ~SelectUserDlg() override;

    // Fills the rows from the settings and focuses the row of `strFocus`, or of the last login when it is empty.
    void initRecordUserInfo(const QString &strFocus);

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private slots:
    void displayError(VLM_WS_EXT_ERRCODE_T e_ret);
    void enterVelmoraMainDlg(HANDLE_T h_handle);
    void loadingToMainDlg();
    void deleteUser();
    void newUser();
    void handleDeviceError();
    void generateDeviceActivationCodeDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);
    void deleteUserDone(HANDLE_T h_handle, VLM_WS_EXT_ERRCODE_T e_ret, VOID *pv_tag);

private:
    static constexpr int maxAccounts = 5;

    void generateDeviceActivationCode();
    void openSignIn(const QString &account);    // empty: no particular account
    QPushButton *control(int focusIndex) const; // null outside the rows that show
    QPushButton *rowButton(int row) const;      // 1 to 5
    QPushButton *deleteButton(int row) const;
    QLabel *rowIcon(int row) const;
    int focusRow() const { return (m_focusIndex + 1) / 2; }
    QString focusUser() const { return m_userNames.value(focusRow() - 1); }
    void dress(int focusIndex, bool isFocused);
    void moveFocus(int focusIndex);
    void paintRow(QPushButton *button) const;

    std::unique_ptr<Ui::SelectUserDlg> ui;
    viewcomponent::MCommonStyle m_style;
    VelmoraLogin *m_login;   // child
    QStringList m_userNames; // of the rows
    int m_userCount = 0;
    int m_focusIndex = 0;  // 0 newUserBtn; 2k - 1 row k; 2k its delete button
    QString m_deletedUser; // the account that is being deleted
};
