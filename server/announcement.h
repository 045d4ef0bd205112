#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace velmora::server {

// Tells the house's network where the service is (DNS-SD, `_velmora._tcp`), through the system's Avahi. As long as
// Avahi does not run nothing is told; when it comes, or comes back, the service is told of again. Where there is no
// system bus (D-Bus) nothing is announced, and the log says so. Works on a thread of its own; the end of the object
// ends the announcement.
class Announcement {
public:
    // `isEncrypted`: the TXT record says tls=1.
    Announcement(uint16_t port, bool isEncrypted);
    ~Announcement();
    Announcement(const Announcement &) = delete;
    Announcement &operator=(const Announcement &) = delete;

    static constexpr const char *type = "_velmora._tcp";

private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

} // namespace velmora::server
