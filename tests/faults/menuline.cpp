#include "menuline.h"

#include "platform/netcommon/device/menusocket.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>

#include <poll.h>
#include <unistd.h>

namespace faults {

namespace menu = netcommon::menu;

namespace {
constexpr int patienceMs = 10000;
}

MenuLine::MenuLine(const QString &socket)
{
    QString reason;
    m_descriptor = menu::connectTo(QFile::encodeName(socket), &reason);
}

MenuLine::~MenuLine()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool MenuLine::ask(menu::MessageType type, std::uint32_t value, QByteArray *answer)
{
    QElapsedTimer clock;
    clock.start();
    if (m_descriptor < 0 || !menu::send(m_descriptor, menu::makeMessage(type, ++m_id, value)))
        return false;
    while (clock.elapsed() < patienceMs) {
        pollfd watched{m_descriptor, POLLIN, 0};
        ::poll(&watched, 1, int(patienceMs - clock.elapsed()));
        menu::Packet packet;
        const auto received = menu::receive(m_descriptor, packet);
        if (received == menu::Received::Closed)
            break;
        // An answer that came too late belongs to an earlier question.
        if (received == menu::Received::Nothing || menu::field(packet.message, menu::idOffset) != m_id)
            continue;
        m_answerMs = int(clock.elapsed());
        *answer = packet.text;
        return menu::AnswerValue(menu::field(packet.message, menu::valueOffset)) == menu::AnswerValue::Done;
    }
    m_answerMs = int(clock.elapsed());
    return false;
}

QJsonObject MenuLine::status()
{
    QByteArray answer;
    return ask(menu::MessageType::Status, 0, &answer) ? QJsonDocument::fromJson(answer).object() : QJsonObject();
}

bool MenuLine::key(int key)
{
    QByteArray ignored;
    return ask(menu::MessageType::Key, std::uint32_t(key), &ignored);
}

bool MenuLine::network(bool isUp)
{
    QByteArray ignored;
    return ask(menu::MessageType::Network, isUp ? 0 : 1, &ignored);
}

} // namespace faults
