#pragma once

#include "service/wsreply.h"

#include <QString>

#include <optional>

class VelmoraParentWidget;

// What account selection and the activation screen share: the two prepared lines and the request for a code.
namespace deviceactivation {

QString codeLine(const QString &code); // "Your activation code is:    " and the code
QString pageLine(const QString &url);  // "Please go to    " and the address

// Asks the service for a code for this device. The library's immediate result; nothing when the hardware address cannot
// be read, which is only logged.
std::optional<VLM_WS_EXT_ERRCODE_T> requestCode();

// The service's answer to that: the code, and nothing once a failure has been logged; the screen tells of it. Ends the
// animation of `screen` and releases the handle.
std::optional<wsreply::ActivationCode> takeCode(VelmoraParentWidget *screen, HANDLE_T h_handle,
                                                VLM_WS_EXT_ERRCODE_T e_ret);

} // namespace deviceactivation
