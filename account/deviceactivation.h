#pragma once

#include "service/wsreply.h"

#include <QString>

#include <optional>

class VelmoraParentWidget;

// What account selection and the activation screen share: the two prepared lines and the request for a code.
namespace deviceactivation {

QString codeLine(const QString &code); // "Your activation code is:    " and the code
QString pageLine(const QString &url);  // "Please go to    " and the address

// The address of the page with the code in it, from both lines. Empty when the first names no http or https address or
// the second no code.
QString addressWithCode(const QString &pageLine, const QString &codeLine);

// Asks the service for a code for this device. Returns the library's immediate result, or nothing when the hardware
// address cannot be read, which is only logged.
std::optional<VLM_WS_EXT_ERRCODE_T> requestCode();

// Handles the service's reply: ends the animation of `screen` and releases the handle. Returns the code, or nothing
// after a failure, which it logs and the screen shows.
std::optional<wsreply::ActivationCode> takeCode(VelmoraParentWidget *screen, HANDLE_T h_handle,
                                                VLM_WS_EXT_ERRCODE_T e_ret);

} // namespace deviceactivation
