#pragma once

#include "server/remote/remoterecords.h"

// The markup, style and script of the page /remote.
namespace velmora::server::remotepage {

struct Content {
    std::string name;     // of the radio
    std::string deviceId; // the posted field `radio`
    std::string csrf;
    std::string revision; // of the state, for the script
    bool isConnected = false;
    RadioState state;
    std::string cover; // address; empty: none
    std::string problem;
    std::vector<std::pair<std::string, std::string>> others; // device id and name of the account's other radios
};
std::string body(const Content &content);

// Served as /remote.css and /remote.js.
const char *styleSheet();
const char *script();

} // namespace velmora::server::remotepage
