#include "menurequests.h"

#include "networkinjection.h"
#include "remotekeys.h"
#include "screenshot.h"
#include "statusreport.h"

#include <QCoreApplication>
#include <QDebug>
#include <QJsonDocument>

namespace netcommon::MenuRequests {

namespace {

void handle(const menu::Packet &packet, const std::shared_ptr<MenuLink> &link)
{
    const std::uint32_t id = menu::field(packet.message, menu::idOffset);
    const std::uint32_t value = menu::field(packet.message, menu::valueOffset);
    const auto answer = [link, id](menu::AnswerValue result, const QByteArray &text = {}) {
        link->send(menu::makeMessage(menu::Answer, id, result), text);
    };
    const auto answerWhenHandled = [answer] {
        QMetaObject::invokeMethod(
            qApp, [answer] { answer(menu::Done); }, Qt::QueuedConnection);
    };

    switch (packet.message.type) {
    case menu::Key:
    case menu::Text: {
        const bool taken = packet.message.type == menu::Text
                               ? RemoteKeys::type(QString::fromUtf8(packet.text))
                               : RemoteKeys::press(int(value), menu::field(packet.message, menu::flagOffset) != 0);
        if (taken)
            answerWhenHandled();
        else
            answer(menu::Failed, "no screen takes keys now");
        break;
    }
    case menu::Network:
        answer(menu::Done); // first: a screen may answer the event with a box, which keeps this call until it is closed
        injectNetworkEvent(value ? NETWORK_EVENT_DISCONNECTED : NETWORK_EVENT_CONNECTED);
        break;
    case menu::Status:
        answer(menu::Done, statusLine());
        break;
    case menu::Screenshot: {
        const QString problem = writeScreenshot(QString::fromUtf8(packet.text));
        answer(problem.isEmpty() ? menu::Done : menu::Failed, problem.toUtf8());
        break;
    }
    case menu::ScreenSaver:
    case menu::Ping:
        answer(menu::Done);
        break;
    default:
        qDebug("MenuRequests,handle,unknown type=%u", packet.message.type);
        answer(menu::Failed, "the radio does not know this request");
    }
}

} // namespace

void handleLater(const menu::Packet &packet, const std::shared_ptr<MenuLink> &link)
{
    if (auto *application = QCoreApplication::instance())
        QMetaObject::invokeMethod(
            application, [packet, link] { handle(packet, link); }, Qt::QueuedConnection);
}

} // namespace netcommon::MenuRequests
