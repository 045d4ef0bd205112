#include "account/loadingdlg.h"
#include "account/welcomedlg.h"
#include "app/crashreporter.h"
#include "app/plainlook.h"
#include "netcommon/ipc.h"
#include "netcommon/ipcthread.h"
#include "netcommon/networknotify.h"
#include "netcommon/playback.h"
#include "program/productfactory.h"
#include "service/devicepaths.h"
#include "service/velmorametatypes.h"
#include "service/velmorasettings.h"
#include "service/velmorawebservice.h"
#include "widgets/sharppanels.h"

#include <QApplication>
#include <QFile>
#include <QPixmapCache>

#include <cstdio>
#include <cstring>
#include <memory>

#include <unistd.h>

namespace {

constexpr useconds_t startPollUs = 150'000;
constexpr std::uint32_t applicationEnded = 4; // type of the exit notice

// On standard output, newline before carriage return: deliberate. Flushed, because it may be a file.
void sayOnConsole(const char *text)
{
    std::printf("%s\n\r", text);
    std::fflush(stdout);
}

void loadStyleSheet()
{
    qDebug("Velmora main function,load qss file...");
    auto file = std::make_unique<QFile>(QStringLiteral(":velmora.qss"));
    file->open(QIODevice::ReadOnly); // without it the radio runs unstyled
    const QByteArray bytes = file->readAll();
    QString sheet = QString::fromLatin1(bytes.constData());
    if (plainlook::isNeeded())
        sheet += plainlook::styleSheet();
    qApp->setStyleSheet(sheet);
    file->close();
    file.reset();
    qDebug("Velmora main function,load qss file,done!");
}

// Qt would keep up to 10 MB of pictures of previous screens for a minute. The limit leaves room for the small ones,
// which are drawn repeatedly.
void keepFewPictures()
{
    constexpr int kibibytes = 256; // at the canvas's own size
    QPixmapCache::setCacheLimit(qRound(kibibytes * qApp->devicePixelRatio() * qApp->devicePixelRatio()));
}

void startIpcThread(netcommon::IpcThread *ipcThread)
{
    ipcThread->start(QThread::InheritPriority);
    while (!ipcThread->isStarted()) { // without limit
        qDebug("Velmora main function,wait start...");
        usleep(startPollUs);
    }
}

// The first screen deletes itself when it hands over or the application ends.
void showFirstScreen()
{
    qDebug("startVelmora...");
    VelmoraSettings settings = deviceSettings();
    VelmoraParentWidget *screen = nullptr;
    if (settings.getWelcomeCheck() == QLatin1String("1"))
        screen = new LoadingDlg(nullptr);
    else
        screen = new WelcomeDlg(nullptr);
    screen->show();
}

void endWebService(VelmoraWebService *webService)
{
    if (!webService)
        return;
    const int result = webService->uninit();
    if (result != 0)
        qDebug("Velmora web service uninit failed=%d!", result);
    qDebug("Velmora main function ,delete VelmoraWebService");
    delete webService;
}

void endPlatform()
{
    if (auto *playback = netcommon::Playback::getInstance()) {
        qDebug("Velmora main function,delete VelmoraPlayback");
        delete playback;
    }
    if (auto *notify = netcommon::NetworkNotify::getInstance()) {
        qDebug("Velmora main function,delete NetworkNotify");
        delete notify;
    }
}

void tellMenuSystem()
{
    sayOnConsole("Velmora main function emit exit signal...");
    _NETWORK_MSG_T message;
    std::memset(&message, 0, sizeof message);
    message.type = applicationEnded;
    if (auto *ipc = netcommon::Ipc::getInstance())
        ipc->sendIpcMsg(&message);
    if (auto *ipc = netcommon::Ipc::getInstance()) {
        sayOnConsole("Velmora main function,delete VelmoraIpc.");
        delete ipc;
    }
    sayOnConsole("Velmora main function exit ok!");
}

} // namespace

// The order of everything here is the contract with the device's menu system.
int main(int argc, char **argv)
{
    // Texts are laid out for 96 dots per inch, whatever size the television reports.
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    auto *application = new QApplication(argc, argv); // no scope owns it: the early return must not delete it
    qDebug("Velmora main function ...");
    // Screens follow one another: between two of them no window may be open.
    QApplication::setQuitOnLastWindowClosed(false);
    keepFewPictures();
    new SharpPanels(application);
    ProductFactory factory;
    ScreenFactory::setInstance(&factory);

    registerVelmoraMetaTypes();
    device::makeScratchDir();
    VelmoraWebService *webService = VelmoraWebService::getInstance();
    if (webService->init() != 0) {
        qDebug("Velmora main function,webService_init failed!");
        return 0; // at once, without clean-up: deliberate
    }
    loadStyleSheet();

    if (auto *ipcThread = netcommon::IpcThread::getInstance()) {
        startIpcThread(ipcThread);
        showFirstScreen();
        installCrashReporter();
        qDebug("Velmora main function,a exec.");
        QApplication::exec();
        const bool isEnded = ipcThread->wait();
        qDebug("Velmora main function,ipc thread return %s.", isEnded ? "true" : "false");
        delete ipcThread;
    }

    qDebug("Velmora main function exit..");
    endWebService(webService);
    endPlatform();
    VelmoraParentWidget::m_ui_type_queue.clear();
    delete application;
    device::removeScratchDir();
    tellMenuSystem();
    return 0;
}
