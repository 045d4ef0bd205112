#pragma once

#include "velmora_ws.h"

#include <QString>

#include <optional>

// What account selection and the activation screen share: the two prepared lines, and the slot that the account to come
// will have.
namespace deviceactivation {

QString codeLine(const QString &code); // "Your activation code is:    " and the code
QString pageLine(const QString &url);  // "Please go to    " and the address

// Asks the service for a code for this device, after reserving the slot of the account to come. The library's immediate
// result; nothing when the hardware address cannot be read, which is only logged.
std::optional<VLM_WS_EXT_ERRCODE_T> requestCode();

// The login that follows the activation takes its slot from the last login: records ("", free slot) there and keeps what
// stood there before. A second call keeps the first memory.
void reserveSlot();
// Leaving without an activation: the last login is what it was.
void giveSlotBack();
// The activation led to an account: nothing is to be given back.
void forgetReservation();

} // namespace deviceactivation
