#include "server/announcement.h"

#include "server/logging/log.h"

#include <avahi-client/client.h>
#include <avahi-client/publish.h>
#include <avahi-common/alternative.h>
#include <avahi-common/error.h>
#include <avahi-common/malloc.h>
#include <avahi-common/thread-watch.h>

namespace velmora::server {

// All but the constructor and the destructor runs on the poll's thread.
struct Announcement::Private {
    Private(uint16_t servicePort, bool isServiceEncrypted)
        : port(servicePort)
        , isEncrypted(isServiceEncrypted)
        , poll(avahi_threaded_poll_new())
    {
        if (!poll)
            return;
        connect();
        if (avahi_threaded_poll_start(poll) == 0)
            isRunning = true;
    }
    ~Private()
    {
        if (isRunning)
            avahi_threaded_poll_stop(poll);
        if (client)
            avahi_client_free(client); // and with it the group
        if (poll)
            avahi_threaded_poll_free(poll);
    }
    Private(const Private &) = delete;
    Private &operator=(const Private &) = delete;

    void connect()
    {
        int error = 0;
        // Waits for Avahi where it does not run yet.
        client = avahi_client_new(avahi_threaded_poll_get(poll), AVAHI_CLIENT_NO_FAIL, clientChanged, this, &error);
        if (!client)
            report(error);
    }

    static void report(int error) { logs::warn(std::string("the service is not announced: ") + avahi_strerror(error)); }

    static void clientChanged(AvahiClient *client, AvahiClientState state, void *object)
    {
        auto *self = static_cast<Private *>(object);
        self->client = client; // called before avahi_client_new() returns, too
        switch (state) {
        case AVAHI_CLIENT_S_RUNNING:
            self->publish();
            break;
        case AVAHI_CLIENT_S_COLLISION: // another machine has this one's name: a new name comes
        case AVAHI_CLIENT_S_REGISTERING:
            if (self->group)
                avahi_entry_group_reset(self->group);
            break;
        case AVAHI_CLIENT_FAILURE:
            self->group = nullptr; // freed with the client
            self->client = nullptr;
            if (avahi_client_errno(client) == AVAHI_ERR_DISCONNECTED) {
                avahi_client_free(client);
                self->connect();
            } else {
                report(avahi_client_errno(client));
                avahi_client_free(client);
            }
            break;
        case AVAHI_CLIENT_CONNECTING:
            break;
        }
    }

    static void groupChanged(AvahiEntryGroup *group, AvahiEntryGroupState state, void *object)
    {
        auto *self = static_cast<Private *>(object);
        if (state == AVAHI_ENTRY_GROUP_FAILURE)
            report(avahi_client_errno(avahi_entry_group_get_client(group)));
        if (state != AVAHI_ENTRY_GROUP_COLLISION)
            return;
        self->group = group;
        self->rename();
        self->publish();
    }

    void rename()
    {
        char *other = avahi_alternative_service_name(name.c_str());
        name = other;
        avahi_free(other);
    }

    void publish()
    {
        if (!group)
            group = avahi_entry_group_new(client, groupChanged, this);
        if (!group) {
            report(avahi_client_errno(client));
            return;
        }
        if (avahi_entry_group_is_empty(group) == 0)
            avahi_entry_group_reset(group);
        if (name.empty())
            name = std::string("Velmora on ") + avahi_client_get_host_name(client);
        int result = AVAHI_ERR_COLLISION;
        for (int tries = 0; tries < 10 && result == AVAHI_ERR_COLLISION; ++tries) {
            if (tries > 0)
                rename();
            result = avahi_entry_group_add_service(group, AVAHI_IF_UNSPEC, AVAHI_PROTO_UNSPEC, AvahiPublishFlags(0),
                                                   name.c_str(), type, nullptr, nullptr, port,
                                                   isEncrypted ? "tls=1" : "tls=0", nullptr);
        }
        if (result == AVAHI_OK)
            result = avahi_entry_group_commit(group);
        if (result != AVAHI_OK)
            report(result);
    }

    const uint16_t port;
    const bool isEncrypted;
    std::string name; // among the services of the network
    AvahiThreadedPoll *const poll;
    AvahiClient *client = nullptr;
    AvahiEntryGroup *group = nullptr; // belongs to the client
    bool isRunning = false;
};

Announcement::Announcement(uint16_t port, bool isEncrypted)
    : m_private(std::make_unique<Private>(port, isEncrypted))
{
}

Announcement::~Announcement() = default;

} // namespace velmora::server
