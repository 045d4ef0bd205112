#pragma once

#include "server/api/stationservice.h"

#include <string>

namespace velmora::server {

// The whole message, headers and all, as plain text and as HTML; a recipient that is no mail address is refused
// (empty). A line of the text that is an address becomes a link.
std::string mailMessage(const std::string &sender, const std::string &recipient, const std::string &subject,
                        const std::string &text, int64_t now);
// What a message as mailMessage() writes it says; an older one has no parts. The name is its file's in the outbox.
KeptMail readMail(const std::string &name, const std::string &message);

} // namespace velmora::server
