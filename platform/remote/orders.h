#pragma once

#include "menusocket.h"

#include <QJsonObject>

#include <optional>

namespace remote {

// What the menu system is asked for an order of a telephone. Nothing for an order that is not known or out of range:
// the service is another program, and may be newer or broken.
std::optional<netcommon::menu::Packet> requestFor(const QJsonObject &order);

} // namespace remote
