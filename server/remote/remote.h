#pragma once

#include "server/accounts/ratelimit.h"
#include "server/api/stationservice.h"
#include "server/remote/remotehub.h"
#include "server/remote/remoterecords.h"
#include "server/web/webpages.h"

namespace velmora::server {

// The telephone as the radio's remote control: the page /remote, and the two functions through which a radio gets its
// orders and says what it shows. An account may press keys on the radios that are linked with it; that is asked at each
// press and each look, so a browser's session or a link that has ended ends the remote at once. Called from the
// server's threads.
class Remote {
public:
    // Both must outlive this object and the server.
    Remote(StationService &service, WebPages &pages, RemoteHub::Now now = RemoteHub::Clock::now);

    void addTo(http::Router &router);

private:
    // radiochannel.cpp
    http::Response takeOrders(const http::Request &request);
    http::Response takeReport(const http::Request &request);

    // remotepage.cpp
    using Visitor = WebPages::Visitor;
    // One of the account's radios.
    struct Radio {
        Device device;
        std::string key; // the hash by which the hub knows it; the one that is there, if it has several
        bool isConnected = false;
        std::string name() const { return device.name.empty() ? device.deviceId : device.name; }
    };
    std::vector<Radio> radiosOf(AccountId account);
    std::optional<Radio> radioOf(const Visitor &visitor);
    // False when it has answered instead: nobody is signed in, or the radio is none of the account's.
    bool isAllowed(Visitor &visitor, const std::optional<Radio> &radio);
    void showPage(Visitor &visitor);
    void tellState(Visitor &visitor);
    void press(Visitor &visitor);
    std::string coverAddress(const Visitor &visitor, const std::string &file) const;

    StationService &m_service;
    WebPages &m_pages;
    RemoteHub m_hub;
    RateLimit m_presses{600, std::chrono::seconds(30)}; // of one account
};

} // namespace velmora::server
