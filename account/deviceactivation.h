#pragma once

#include "service/wsreply.h"

#include <QString>

#include <optional>

class VelmoraParentWidget;

// What account selection and the activation screen share: the two prepared lines, and the slot that the account to come
// will have.
namespace deviceactivation {

QString codeLine(const QString &code); // "Your activation code is:    " and the code
QString pageLine(const QString &url);  // "Please go to    " and the address

// Asks the service for a code for this device, after reserving the slot of the account to come. The library's immediate
// result; nothing when the hardware address cannot be read, which is only logged.
std::optional<VLM_WS_EXT_ERRCODE_T> requestCode();

// The service's answer to that: the code, and nothing once a failure has been logged; the screen tells of it. Ends the
// animation of `screen` and releases the handle.
std::optional<wsreply::ActivationCode> takeCode(VelmoraParentWidget *screen, HANDLE_T h_handle,
                                                VLM_WS_EXT_ERRCODE_T e_ret);

// The login that follows the activation takes its slot from the last login: records ("", free slot) there and keeps
// what stood there before. A second call keeps the first memory.
void reserveSlot();
// Leaving without an activation: the last login is what it was.
void giveSlotBack();
// The activation led to an account: nothing is to be given back.
void forgetReservation();

} // namespace deviceactivation
