#include "menulink.h"

#include <QDebug>

#include <cerrno>
#include <unistd.h>

namespace netcommon {

namespace {

std::mutex sharedMutex;

std::shared_ptr<MenuLink> &sharedLink()
{
    static std::shared_ptr<MenuLink> link;
    return link;
}

} // namespace

std::shared_ptr<MenuLink> MenuLink::shared()
{
    const std::scoped_lock lock(sharedMutex);
    auto &link = sharedLink();
    if (!link)
        link.reset(new MenuLink);
    return link;
}

void MenuLink::forget()
{
    const std::scoped_lock lock(sharedMutex);
    sharedLink().reset();
}

MenuLink::MenuLink()
{
    const QByteArray path = qgetenv(menu::socketVariable);
    if (path.isEmpty())
        return;
    QString reason;
    m_descriptor = menu::connectTo(path, &reason);
    m_isOpen = m_descriptor >= 0;
    if (m_isOpen)
        send(menu::makeMessage(menu::MessageType::Hello, 0, std::uint32_t(::getpid())));
    else
        qDebug("MenuLink,connect,no menu system: %s", qPrintable(reason));
}

MenuLink::~MenuLink()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool MenuLink::isConnected() const
{
    const std::scoped_lock lock(m_mutex);
    return m_isOpen;
}

bool MenuLink::send(const _NETWORK_MSG_T &message, const QByteArray &text)
{
    if (!isConnected())
        return false;
    if (menu::send(m_descriptor, message, text))
        return true;
    if (errno == EPIPE || errno == ECONNRESET) {
        const std::scoped_lock lock(m_mutex);
        m_isOpen = false;
    }
    return false;
}

menu::Received MenuLink::receive(menu::Packet &packet)
{
    const auto received = isConnected() ? menu::receive(m_descriptor, packet) : menu::Received::Closed;
    if (received == menu::Received::Closed) {
        const std::scoped_lock lock(m_mutex);
        m_isOpen = false;
    }
    return received;
}

} // namespace netcommon
