#pragma once

#include "app/textentrydlg.h"

#include <memory>

class QLineEdit;
class VelmoraLogin;

namespace Ui {
class SignInDlg;
}

// Sign-in with e-mail address and password, typed on the on-screen keyboard or read from a removable medium.
class SignInDlg : public TextEntryDlg {
    Q_OBJECT
public:
    explicit SignInDlg(QWidget *parent = nullptr);
    ~SignInDlg() override;

    // Shows the screen for a known account: only the password is asked.
    void showByAccount(const QString &account);

    void loseFocus(bool fgMsgbox) override;
    void resetFocus(bool fgMsgbox) override;

protected:
    void keyReleaseEvent(QKeyEvent *event) override;

private slots:
    void signInVelmora(QString strContent);
    void displayError(VLM_WS_EXT_ERRCODE_T e_ret);
    void displayUnknownDevice();
    void enterVelmoraMainDlg(HANDLE_T h_handle);
    void recoverInitInputState();
    void changeInitInputState();
    void showDigitHint(int pageNum);

private:
    enum class Stage { Email, Password };
    static constexpr int letterPage = 1; // as the keyboard numbers its pages
    static constexpr int symbolPage = 2;

    QLineEdit *activeField() const;
    void askForPassword();
    void askForEmailAgain();
    bool signInFromLoginFile();
    void logIn(const QString &email, const QString &password);

    std::unique_ptr<Ui::SignInDlg> ui;
    VelmoraLogin *m_login; // child
    Stage m_stage = Stage::Email;
    int m_page = letterPage;        // that the keyboard shows
    bool m_isLoginUnderWay = false; // from the request to the station list or the failure
};
