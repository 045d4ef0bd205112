// Packets of the menu system, as the radio takes them. The first byte is the type; then id, value, flag and text.
#include "netcommon/networknotify.h"
#include "platform/netcommon/device/menurequests.h"
#include "scratchfile.h"

#include <QApplication>
#include <QLineEdit>

#include <sys/socket.h>
#include <unistd.h>

using namespace netcommon;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_menu";
    static char *argv[] = {name, nullptr};
    static QApplication *application = [] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        return new QApplication(argc, argv); // lives as long as the process
    }();
    static QLineEdit *const field = [] {
        auto *window = new QLineEdit; // lives as long as the process
        window->show();
        window->activateWindow();
        return window;
    }();
    static const int *const ends = [] {
        static int pair[2];
        fuzz::require(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, pair) == 0);
        return pair;
    }();
    if (size > 0 && ::send(ends[0], data, size, MSG_DONTWAIT | MSG_NOSIGNAL) != ssize_t(size))
        return 0;
    menu::Packet packet;
    if (size == 0 || menu::receive(ends[1], packet) != menu::Received::Packet)
        return 0;
    // A picture is written where its sender says: it runs as the same user.
    if (menu::typeOf(packet.message) == menu::MessageType::Screenshot)
        return 0;
    MenuRequests::handleLater(packet, MenuLink::shared());
    application->processEvents();
    field->clear();
    return 0;
}
