// A program that replaces the radio. Red opens its last message box, green focuses the field, end the control in the
// corner, yellow hangs, blue asks to exit as after a fault, play as a person wishes, stop hides the screen. Options:
// --deaf (ignores exit orders),
// --ask (asks to exit at once), --code N (ends with N).
#include "app/crashreporter.h"
#include "netcommon/ipc.h"
#include "netcommon/ipcthread.h"
#include "netcommon/networknotify.h"
#include "viewcomponent/magicscrollbar.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace {

void say(const QString &text)
{
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

void sayKey(const char *what, const QKeyEvent *event)
{
    say(QStringLiteral("%1 %2").arg(QLatin1String(what)).arg(event->key(), 8, 16, QLatin1Char('0')));
}

// Says which keys the X server reports, whatever becomes of them.
class ServerKeys : public QAbstractNativeEventFilter {
public:
    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *) override
    {
        constexpr quint8 keyPress = 2; // of the X protocol; the key code follows it
        const auto *const event = static_cast<const quint8 *>(message);
        if (type == "xcb_generic_event_t" && (event[0] & 0x7f) == keyPress)
            say(QStringLiteral("server's press %1").arg(event[1]));
        return false;
    }
};

} // namespace

// The screens of this program. They report on standard output what reaches them.
class SampleDlg : public QDialog {
    Q_OBJECT
public:
    SampleDlg();

public slots:
    void handleExit(bool isFromParent, bool isSystemError);
    void handleScreenSaver(bool fgEnter);

signals:
    void signalResponseParent(int type);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    QListWidget *m_list;
};

class SampleBoxDlg : public QDialog {
    Q_OBJECT
public:
    explicit SampleBoxDlg(QWidget *parent);

protected:
    void keyReleaseEvent(QKeyEvent *event) override;
};

SampleDlg::SampleDlg()
    : QDialog(nullptr, Qt::Dialog | Qt::FramelessWindowHint)
    , m_list(new QListWidget(this))
{
    resize(1280, 720);
    setStyleSheet("SampleDlg { background: #204060; }");
    m_list->setObjectName("stationListWidget");
    m_list->setGeometry(64, 130, 324, 300);
    m_list->addItems({"Quiet Evening", "Morning Walk"});
    m_list->setFocusPolicy(Qt::ClickFocus);
    auto *label = new QLabel("Station List", this);
    label->setObjectName("stationLabel");
    label->setGeometry(64, 92, 200, 32);
    auto *button = new QPushButton("Menu", this);
    button->setObjectName("menuBtn");
    button->setGeometry(500, 130, 200, 48);
    button->setFocusPolicy(Qt::ClickFocus);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [] { say("clicked"); });
    auto *corner = new QWidget(this);
    corner->setObjectName("corner");
    corner->setGeometry(1180, 680, 80, 20);
    corner->setStyleSheet("background: #F0F0F0;");
    auto *field = new QLineEdit(this);
    field->setObjectName("nameEdit");
    field->setGeometry(500, 230, 400, 48);
    field->setFocusPolicy(Qt::ClickFocus);
    connect(field, &QLineEdit::textChanged, this,
            [](const QString &text) { say(QStringLiteral("text %1").arg(text)); });
    auto *password = new QLineEdit("a secret", this);
    password->setObjectName("passwordEdit");
    password->setEchoMode(QLineEdit::Password);
    password->setGeometry(500, 330, 400, 48);
    password->setFocusPolicy(Qt::ClickFocus);
    m_list->setCurrentRow(0);
    button->setFocus();
}

void SampleDlg::handleExit(bool isFromParent, bool isSystemError)
{
    say(QStringLiteral("exit %1 %2").arg(isFromParent).arg(isSystemError));
    if (QCoreApplication::arguments().contains("--deaf"))
        return;
    close();
    emit signalResponseParent(2);
    emit signalResponseParent(2);
    QCoreApplication::quit();
}

void SampleDlg::handleScreenSaver(bool fgEnter)
{
    say(QStringLiteral("screensaver %1").arg(fgEnter));
}

void SampleDlg::keyPressEvent(QKeyEvent *event)
{
    sayKey("press", event);
    switch (event->key()) {
    case 0x010000CB:
        QTimer::singleShot(0, this, [this] {
            SampleBoxDlg box(this);
            say(QStringLiteral("box %1").arg(box.exec()));
        });
        break;
    case 0x010000C0:
        findChild<QLineEdit *>(QStringLiteral("nameEdit"))->setFocus();
        break;
    case Qt::Key_End:
        findChild<QWidget *>(QStringLiteral("corner"))->setFocus();
        break;
    case Qt::Key_Yellow:
        say("hanging");
        for (;;)
            ::pause();
    case Qt::Key_Blue:
        say(QStringLiteral("request %1").arg(netcommon::Ipc::requestExit(false)));
        break;
    case Qt::Key_MediaPlay:
        qApp->setProperty(netcommon::exitWishProperty, true);
        netcommon::Ipc::requestExit(false);
        break;
    case Qt::Key_MediaStop:
        hide();
        break;
    default:
        break;
    }
}

void SampleDlg::keyReleaseEvent(QKeyEvent *event)
{
    sayKey("release", event);
}

SampleBoxDlg::SampleBoxDlg(QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint)
{
    resize(780, 339);
    move(240, 175);
    setStyleSheet("SampleBoxDlg { background: #603020; }");
    setProperty(netcommon::lastBoxProperty, true);
    auto *content = new QLabel("Really?", this);
    content->setObjectName("contentLabel");
    content->setGeometry(140, 20, 601, 201);
    auto *button = new QPushButton("OK", this);
    button->setObjectName("okBtn");
    button->setGeometry(260, 230, 250, 45);
    button->setFocusPolicy(Qt::ClickFocus);
    connect(button, &QPushButton::clicked, this, &QDialog::accept);
    button->setFocus();
}

void SampleBoxDlg::keyReleaseEvent(QKeyEvent *event)
{
    sayKey("box release", event);
}

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    QApplication application(argc, argv);
    ServerKeys serverKeys;
    application.installNativeEventFilter(&serverKeys);
    QApplication::setQuitOnLastWindowClosed(false);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    say(QStringLiteral("umask %1").arg(mask, 3, 8, QLatin1Char('0')));
    if (application.arguments().contains("--deaf"))
        ::signal(SIGTERM, SIG_IGN);

    auto *thread = netcommon::IpcThread::getInstance();
    thread->start();
    SampleDlg screen;
    QObject::connect(thread, &netcommon::IpcThread::signalExit, &screen, &SampleDlg::handleExit);
    QObject::connect(thread, &netcommon::IpcThread::signalScreenSaver, &screen, &SampleDlg::handleScreenSaver);
    QObject::connect(&screen, &SampleDlg::signalResponseParent, thread, &netcommon::IpcThread::responseParent);
    QObject::connect(netcommon::NetworkNotify::getInstance(), &netcommon::NetworkNotify::signalSendNetowrkEvent,
                     [](NETWORk_EVENT_T event) { say(QStringLiteral("network %1").arg(event)); });
    const viewcomponent::MagicScrollBar library; // the library is loaded for its canvas
    screen.show();
    if (!application.arguments().contains("--deaf"))
        installCrashReporter();
    if (application.arguments().contains("--ask"))
        QTimer::singleShot(0, &screen, [] { netcommon::Ipc::requestExit(false); });
    application.exec();
    say(QStringLiteral("thread ended %1").arg(thread->wait()));
    delete thread;
    delete netcommon::NetworkNotify::getInstance();
    _NETWORK_MSG_T notice{};
    notice.type = 4;
    netcommon::Ipc::getInstance()->sendIpcMsg(&notice);
    delete netcommon::Ipc::getInstance();
    const auto place = application.arguments().indexOf("--code");
    return place > 0 ? application.arguments().value(place + 1).toInt() : 0;
}

#include "menu_sample.moc"
