// velmora-home: what stands on the screen while the radio does not run. The menu system starts it; its exit status says
// what comes next (answer.h).

#include "homepage.h"
#include "netcommon/ipc.h"
#include "netcommon/ipcthread.h"
#include "noticepage.h"
#include "platform/shared/devicesettings.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>

namespace {

using namespace home;

constexpr std::uint32_t applicationEnded = 4; // type of the exit notice

void finish(Answer answer)
{
    QApplication::exit(int(answer));
}

// `isFirst`: nobody has chosen a service yet. Replaces `shown`, by a new one with the new texts, when the language
// changes.
std::unique_ptr<Page> makeHome(bool isKiosk, bool isFirst, std::unique_ptr<Page> *shown)
{
    auto page = std::make_unique<HomePage>(!isKiosk, isFirst);
    QObject::connect(page.get(), &Page::finished, qApp, &finish);
    const auto renew = [shown, isKiosk, isFirst, old = page.get()] {
        if (shown->get() != old) // a second change before the first was carried out
            return;
        auto next = makeHome(isKiosk, isFirst, shown);
        next->show();
        static_cast<HomePage *>(next.get())->goOnFrom(*old);
        *shown = std::move(next);
    };
    QObject::connect(page.get(), &Page::languageChanged, qApp, renew, Qt::QueuedConnection);
    return page;
}

// Null for a name that no page has. `shown` gets Home when that is wanted.
std::unique_ptr<Page> makePage(const QString &name, bool isKiosk, std::unique_ptr<Page> *shown)
{
    if (name == QLatin1String("home") || name == QLatin1String("service"))
        return makeHome(isKiosk, name == QLatin1String("service"), shown);
    std::optional<NoticePage::Kind> kind;
    if (name == QLatin1String("waiting"))
        kind = NoticePage::Kind::Waiting;
    else if (name == QLatin1String("again"))
        kind = NoticePage::Kind::Again;
    else if (name == QLatin1String("stopped"))
        kind = NoticePage::Kind::Stopped;
    if (!kind)
        return nullptr;
    auto page = std::make_unique<NoticePage>(*kind, configuredService(platform::DeviceSettings()));
    QObject::connect(page.get(), &Page::finished, qApp, &finish);
    const auto goHome = [shown, isKiosk] {
        auto next = makeHome(isKiosk, false, shown);
        next->show();
        *shown = std::move(next);
    };
    QObject::connect(page.get(), &NoticePage::wantsHome, qApp, goHome, Qt::QueuedConnection);
    return page;
}

// The menu system passes the device's own choice on to its programs. For Home it is the setting, which may change.
void forgetOwnAddress()
{
    const platform::DeviceSettings settings;
    const QString own = settings.value("service/address").toString();
    if (own.isEmpty() || qEnvironmentVariable("VELMORA_WS_SERVER") != own)
        return;
    qunsetenv("VELMORA_WS_SERVER");
    if (qEnvironmentVariable("VELMORA_WS_CA_FILE") == settings.value("service/authority").toString())
        qunsetenv("VELMORA_WS_CA_FILE");
}

// As the radio does: the menu system knows the difference between an end and a crash.
void tellMenuSystem()
{
    auto *ipc = netcommon::Ipc::getInstance();
    _NETWORK_MSG_T message;
    std::memset(&message, 0, sizeof message);
    message.type = applicationEnded;
    ipc->sendIpcMsg(&message);
    delete ipc;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi); // as the radio is laid out
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false); // one page follows another
    application.setStyleSheet(Page::styleSheet());
    QCommandLineParser line;
    const QCommandLineOption wanted(QStringLiteral("page"), QStringLiteral("home, service, waiting, again or stopped"),
                                    QStringLiteral("NAME"), QStringLiteral("home"));
    const QCommandLineOption kiosk(QStringLiteral("kiosk"),
                                   QStringLiteral("nothing is behind the radio: Home has no Quit"));
    line.addOptions({wanted, kiosk});
    line.addHelpOption();
    line.process(application);

    forgetOwnAddress();
    int status = 2;
    auto *ipcThread = netcommon::IpcThread::getInstance();
    QObject::connect(ipcThread, &netcommon::IpcThread::signalExit, &application, [ipcThread] {
        ipcThread->responseParent(2);
        finish(Answer::Quit);
    });
    {
        std::unique_ptr<Page> shown;
        shown = makePage(line.value(wanted), line.isSet(kiosk), &shown);
        if (shown) {
            ipcThread->start();
            shown->show();
            status = QApplication::exec();
            // The desktop's close button ends a window without an answer.
            if (qApp->property(netcommon::exitWishProperty).toBool())
                status = int(Answer::Quit);
        } else {
            std::fprintf(stderr, "velmora-home: there is no page \"%s\"\n", qPrintable(line.value(wanted)));
        }
    }
    ipcThread->wait();
    delete ipcThread;
    tellMenuSystem();
    return status;
}
