#pragma once

#include "netcommon/netcommon_global.h"
#include "velmora_ws.h"

#include <QDialog>
#include <QList>
#include <QPointer>
#include <QQueue>
#include <QTimer>

class MsgboxDlg;

namespace viewcomponent {
class BufferDlg;
}

// The screens that the navigation history can name.
enum _VELMORA_UI_TYPE_E {
    VELMORA_UI_TYPE_MAIN = 2,
    VELMORA_UI_TYPE_SIGNIN = 3,
    VELMORA_UI_TYPE_NONE = 4,
    VELMORA_UI_TYPE_ACTIVATION = 5,
    VELMORA_UI_TYPE_SELECT_USER = 6
};

// Kinds of message boxes.
enum VelmoraMsgKind { MSG_ERROR = 0, MSG_WARNING = 1, MSG_INFO = 2, MSG_QUESTION = 3 };
// Label sets of the next message box.
enum VelmoraMsgLabels { LABELS_DEFAULT = -1, LABELS_YES_NO = 0, LABELS_ARTIST_TRACK = 1, LABELS_HOME = 2 };

// Base of every full-screen dialog: navigation history and Back, exit, one message box at a time, the idle check, the
// buffering animation, and what a screen does when the network goes. GUI thread only. Deleted on close.
class VelmoraParentWidget : public QDialog {
    Q_OBJECT
public:
    explicit VelmoraParentWidget(QWidget *parent = nullptr,
                                 Qt::WindowFlags flags = Qt::Dialog | Qt::FramelessWindowHint);
    ~VelmoraParentWidget() override;

    // --- navigation history: one queue for all screens
    static void recordHistroyUiType(_VELMORA_UI_TYPE_E e_ui_type);
    static void delUiType();
    static void clearAllRecordHistroyUiType();
    static QQueue<_VELMORA_UI_TYPE_E> m_ui_type_queue;

    // --- focus: subclasses move the highlight off and back onto their own widgets
    virtual void loseFocus(bool fgMsgbox);
    virtual void resetFocus(bool fgMsgbox);

    // --- message box
    void setMsgBoxInfoType(int type); // label set of the next box only
    virtual void destroyedMsgbox();
    // Runs a box modally and returns 1 (OK, Yes, Artist, Home) or 0 (Cancel, No, Track, or destroyed from outside: ask
    // isBoxDestroyed()). THIS SCREEN MAY BE GONE when it returns: guard with QPointer before touching a member.
    virtual int showMsgbox(int type, const QString &text);
    // The same for a message after which the radio exits. A menu system may end the radio instead while it is shown.
    int showLastMsgbox(int type, const QString &text);
    void hideMsgbox();
    void delMsgbox();
    bool isMsgboxShown() const;
    // The last box was closed by the program and not answered: its result 0 is no answer.
    bool isBoxDestroyed() const;

    // --- actions, animation, idle timer
    bool fgActionInvalid(); // true: the action may go on (the inverted name is deliberate)
    void controlAnimation(bool fgHide, const QString &text = QString());
    bool isAnimationShown() const;
    void showShadow(bool fgShow);
    void runTimer();
    void stopTimer();
    void resetNohandleTimeOut();

    // Leaves without a question, because a person wants to. Other ends count as faults, after which the menu system may
    // start the radio again.
    void leaveAsWished();

    // --- hand-over
    // Disconnects this screen and `login` (its login sequence, may be null) from the web service: at most one living
    // receiver may get a completion. Removes the message box and closes the screen, which is deleted later.
    void retire(QObject *login = nullptr);

    // --- service errors
    QString handleWSError(VLM_WS_EXT_ERRCODE_T code);
    void handleWSError(int errType); // the inactive account only
    // The message for a code, or the screen's own `fallback` when there is none.
    QString messageFor(VLM_WS_EXT_ERRCODE_T code, const QString &fallback);
    // Callers ask this before they show a failure. True, and logged, when m_isErrorMsg is set.
    bool isFatalMessageUp() const;
    // A warning, unless a fatal message is up. This screen may be gone afterwards, as after every box.
    void showWarning(const QString &text);

    bool m_isNetworkError = false;
    bool m_isErrorMsg = false; // an error that ends the screen is shown; no further service errors are
    bool isEixt = false;       // an exit is under way (the spelling is deliberate)

public slots:
    void NohandleTimeOut();

signals:
    void signalBlueBtn();
    void signalReturnBtn();
    void signalFatalErr(int errType);
    void signalExit(bool isFromParent, bool isSystemError);
    void signalResponseParent(int type);
    void signalTimeoutPlay();
    void signalTimeoutStop();
    void signalTimeoutNohandle();

protected:
    // Consumes Escape, because QDialog would close the screen, which deletes it. Back is another key.
    bool event(QEvent *event) override;

private slots:
    void exitVelmora();
    void exitVelmora(bool isFromParent, bool isSystemError);
    void returnToLastWindow();
    void handleNetworkEvent(NETWORk_EVENT_T event);
    void gotoHome();
    void handleBufferState(bool isLow);
    void startAniTimer();
    void handleScreenSaver(bool fgEnter);

private:
    void connectPlatform();
    void stopCurrentSong();
    void playCurrentSong();
    void answerParentExit();
    bool isNetworkBoxMine() const;
    bool isCovered() const;
    static QList<VelmoraParentWidget *> screens(); // all living ones
    void dimUnder(const QObject *box);

    bool m_isLastWindow = false; // Back was pressed with an empty history
    bool m_isAnimation = false;
    bool m_isLoseFocus = false;
    bool m_isBoxShown = false;
    bool m_isBoxDestroyed = false;
    bool m_isLastBox = false;     // the next box is the last one
    bool m_isExitWished = false;  // by a person: the next exit without a question
    bool m_isExitGranted = false; // the exit is certain: nothing clears isEixt any more
    int m_msgBoxInfoType = LABELS_DEFAULT;
    QPointer<viewcomponent::BufferDlg> m_bufferDlg;
    QTimer *m_idleTimer; // child
    QPointer<MsgboxDlg> m_msgbox;
    QPointer<QWidget> m_shadow;
    QPointer<QWidget> m_focusUnderAnimation;
    static QPointer<VelmoraParentWidget> m_networkScreen; // shows, or showed, the box of the present network loss
};
