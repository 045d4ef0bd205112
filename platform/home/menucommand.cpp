#include "menucommand.h"

#include "menusocket.h"

#include <unistd.h>

namespace home {

namespace menu = netcommon::menu;

MenuCommand::MenuCommand(QObject *parent)
    : QObject(parent)
{
}

MenuCommand::~MenuCommand()
{
    close();
}

void MenuCommand::close()
{
    m_notifier.reset();
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

// Queued: the notifier that calls this is deleted.
void MenuCommand::end(bool isDone, const QString &text)
{
    if (m_notifier)
        m_notifier->setEnabled(false);
    QMetaObject::invokeMethod(
        this,
        [this, isDone, text] {
            close();
            emit answered(isDone, text);
        },
        Qt::QueuedConnection);
}

void MenuCommand::send(menu::MessageType type, std::uint32_t value, std::uint32_t flag)
{
    close();
    QString reason;
    m_descriptor = menu::connectTo(qgetenv(menu::socketVariable), &reason);
    if (m_descriptor < 0 || !menu::send(m_descriptor, menu::makeMessage(type, 1, value, flag)))
        return end(false, tr("There is no menu system."));
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &MenuCommand::read);
}

void MenuCommand::read()
{
    menu::Packet packet;
    switch (menu::receive(m_descriptor, packet)) {
    case menu::Received::Nothing:
        return;
    case menu::Received::Closed:
        return end(false, tr("There is no menu system."));
    case menu::Received::Packet:
        end(menu::AnswerValue(menu::field(packet.message, menu::valueOffset)) == menu::AnswerValue::Done,
            QString::fromUtf8(packet.text));
    }
}

} // namespace home
