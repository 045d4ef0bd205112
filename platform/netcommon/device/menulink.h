#pragma once

#include "menusocket.h"

#include <memory>
#include <mutex>

namespace netcommon {

// The connection to the menu system, shared by Ipc and IpcThread: the exit notice is sent after the thread and the
// application object are gone. Made on first use, kept until Ipc is deleted. Any thread.
class MenuLink {
public:
    static std::shared_ptr<MenuLink> shared();
    // The next shared() makes a new connection; holders of the old one keep it.
    static void forget();

    ~MenuLink();
    MenuLink(const MenuLink &) = delete;
    MenuLink &operator=(const MenuLink &) = delete;

    // False without a menu system, and after it has gone.
    bool isConnected() const;
    // For poll(); -1 without a menu system.
    int descriptor() const { return m_descriptor; }
    bool send(const _NETWORK_MSG_T &message, const QByteArray &text = {});
    menu::Received receive(menu::Packet &packet);

private:
    MenuLink();

    mutable std::mutex m_mutex; // protects m_isOpen
    int m_descriptor = -1;      // constant from construction to destruction
    bool m_isOpen = false;
};

} // namespace netcommon
