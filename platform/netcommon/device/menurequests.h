#pragma once

#include "menulink.h"

// Requests that the menu system passes on and that look at or touch widgets.
namespace netcommon::MenuRequests {

// IPC thread. The request is handled and answered in the GUI thread; without an application object it is dropped.
void handleLater(const menu::Packet &packet, const std::shared_ptr<MenuLink> &link);

} // namespace netcommon::MenuRequests
