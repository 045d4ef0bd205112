#include "menurequests.h"

#include "networkinjection.h"
#include "platform/netcommon/comfort/comfort.h"
#include "remotekeys.h"
#include "screenshot.h"
#include "statusreport.h"

#include <QCoreApplication>
#include <QDebug>

namespace netcommon::MenuRequests {

namespace {

void handle(const menu::Packet &packet, const std::shared_ptr<MenuLink> &link)
{
    const std::uint32_t id = menu::field(packet.message, menu::idOffset);
    const std::uint32_t value = menu::field(packet.message, menu::valueOffset);
    const auto answer = [link, id](menu::AnswerValue result, const QByteArray &text = {}) {
        link->send(menu::makeMessage(menu::MessageType::Answer, id, std::uint32_t(result)), text);
    };
    const auto answerWhenHandled = [answer] {
        QMetaObject::invokeMethod(
            qApp, [answer] { answer(menu::AnswerValue::Done); }, Qt::QueuedConnection);
    };

    switch (menu::typeOf(packet.message)) {
    case menu::MessageType::Key:
    case menu::MessageType::Text: {
        const std::uint32_t kind = menu::field(packet.message, menu::flagOffset);
        if (Comfort *const comfort = Comfort::instance(); comfort && kind == menu::phoneKey)
            comfort->endIdlePicture(); // who presses it does not see the screen
        const bool taken = menu::typeOf(packet.message) == menu::MessageType::Text
                               ? RemoteKeys::type(QString::fromUtf8(packet.text))
                               : RemoteKeys::press(int(value), kind == menu::typedKey);
        if (taken)
            answerWhenHandled();
        else
            answer(menu::AnswerValue::Failed, "no screen takes keys now");
        break;
    }
    case menu::MessageType::Network:
        answer(menu::AnswerValue::Done); // first: a screen may answer the event with a box, which keeps this call until
                                         // it is closed
        injectNetworkEvent(value ? NETWORK_EVENT_DISCONNECTED : NETWORK_EVENT_CONNECTED);
        break;
    case menu::MessageType::Volume:
    case menu::MessageType::Sleep: {
        Comfort *const comfort = Comfort::instance();
        const std::uint32_t order = menu::field(packet.message, menu::flagOffset);
        if (!comfort)
            answer(menu::AnswerValue::Failed, "this program plays nothing");
        else if (menu::typeOf(packet.message) == menu::MessageType::Volume)
            answer(menu::AnswerValue::Done, comfort->volume(menu::VolumeOrder(order), value));
        else
            answer(menu::AnswerValue::Done, comfort->sleep(menu::SleepOrder(order), value));
        break;
    }
    case menu::MessageType::Station:
    case menu::MessageType::Field: {
        Comfort *const comfort = Comfort::instance();
        const QString text = QString::fromUtf8(packet.text);
        QString problem = QStringLiteral("this program has no screens");
        if (comfort && menu::typeOf(packet.message) == menu::MessageType::Station)
            problem = comfort->phones().playStation(int(value), text);
        else if (comfort)
            problem = menu::field(packet.message, menu::flagOffset) == menu::fieldDone
                          ? comfort->phones().finishField(int(value))
                          : comfort->phones().setField(int(value), text);
        answer(problem.isEmpty() ? menu::AnswerValue::Done : menu::AnswerValue::Failed, problem.toUtf8());
        break;
    }
    case menu::MessageType::Shown:
        if (Comfort *const comfort = Comfort::instance())
            answer(menu::AnswerValue::Done, comfort->shownToPhones());
        else
            answer(menu::AnswerValue::Failed, "this program has no screens");
        break;
    case menu::MessageType::Status:
        answer(menu::AnswerValue::Done, statusLine());
        break;
    case menu::MessageType::Screenshot: {
        const QString problem = writeScreenshot(QString::fromUtf8(packet.text));
        answer(problem.isEmpty() ? menu::AnswerValue::Done : menu::AnswerValue::Failed, problem.toUtf8());
        break;
    }
    case menu::MessageType::Ping:
        link->send(
            menu::makeMessage(menu::MessageType::Answer, id, std::uint32_t(menu::AnswerValue::Done), statusFlags()));
        break;
    case menu::MessageType::ScreenSaver:
        answer(menu::AnswerValue::Done);
        break;
    default:
        qDebug("MenuRequests,handle,unknown type=%u", packet.message.type);
        answer(menu::AnswerValue::Failed, "the radio does not know this request");
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
