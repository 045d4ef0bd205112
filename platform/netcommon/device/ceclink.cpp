#include "ceclink.h"

#include <QDebug>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/cec.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace netcommon {

namespace {
constexpr unsigned char television = 0;
constexpr unsigned char everybody = 0xf;
constexpr char name[] = "Velmora";
} // namespace

std::unique_ptr<CecLink> CecLink::open(const char *path)
{
    const int descriptor = ::open(path, O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return nullptr;
    auto link = std::make_unique<CecLink>(descriptor, [](int adapter, unsigned long request, void *argument) {
        return ::ioctl(adapter, request, argument);
    });
    if (link->configure())
        return link;
    qDebug("CecLink,open,%s cannot be used,errno=%d", path, errno);
    return nullptr;
}

CecLink::CecLink(int descriptor, Control control)
    : m_descriptor(descriptor)
    , m_control(std::move(control))
    , m_messages(std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read))
    , m_events(std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Exception))
{
    connect(m_messages.get(), &QSocketNotifier::activated, this, &CecLink::read);
    connect(m_events.get(), &QSocketNotifier::activated, this, &CecLink::read);
}

CecLink::~CecLink()
{
    m_messages.reset();
    m_events.reset();
    ::close(m_descriptor);
}

bool CecLink::configure()
{
    cec_caps caps{};
    if (!ask(CEC_ADAP_G_CAPS, &caps) || (caps.capabilities & CEC_CAP_TRANSMIT) == 0)
        return false;
    __u32 mode = CEC_MODE_INITIATOR | CEC_MODE_FOLLOWER;
    if (!ask(CEC_S_MODE, &mode))
        return false;
    cec_log_addrs addresses{};
    if (!ask(CEC_ADAP_G_LOG_ADDRS, &addresses))
        return false;
    if (addresses.num_log_addrs > 0) {
        addressed(); // by the system
        return true;
    }
    addresses = {};
    addresses.num_log_addrs = 1;
    addresses.cec_version = CEC_OP_CEC_VERSION_1_4;
    addresses.vendor_id = CEC_VENDOR_ID_NONE;
    addresses.flags = CEC_LOG_ADDRS_FL_ALLOW_RC_PASSTHRU; // the kernel makes an input device of the television's remote
    addresses.log_addr_type[0] = CEC_LOG_ADDR_TYPE_PLAYBACK;
    addresses.primary_device_type[0] = CEC_OP_PRIM_DEVTYPE_PLAYBACK;
    addresses.all_device_types[0] = CEC_OP_ALL_DEVTYPE_PLAYBACK;
    std::memcpy(addresses.osd_name, name, sizeof name);
    return ask(CEC_ADAP_S_LOG_ADDRS, &addresses); // an event says when it has got its address
}

// Once: a television that was switched to something else later is left alone.
void CecLink::addressed()
{
    cec_log_addrs addresses{};
    __u16 place = CEC_PHYS_ADDR_INVALID;
    if (m_isShown || !ask(CEC_ADAP_G_LOG_ADDRS, &addresses) || addresses.num_log_addrs == 0 ||
        addresses.log_addr[0] == CEC_LOG_ADDR_INVALID || !ask(CEC_ADAP_G_PHYS_ADDR, &place) ||
        place == CEC_PHYS_ADDR_INVALID)
        return;
    m_isShown = true;
    m_from = addresses.log_addr[0];
    send(television, {CEC_MSG_IMAGE_VIEW_ON});
    const auto high = static_cast<unsigned char>(place >> 8);
    const auto low = static_cast<unsigned char>(place & 0xff);
    send(everybody, {CEC_MSG_ACTIVE_SOURCE, high, low});
}

void CecLink::standby()
{
    if (m_from != everybody)
        send(television, {CEC_MSG_STANDBY});
}

void CecLink::read()
{
    cec_event event{};
    if (ask(CEC_DQEVENT, &event) && event.event == CEC_EVENT_STATE_CHANGE)
        addressed();
    cec_msg message{};
    if (!ask(CEC_RECEIVE, &message) || message.len < 2)
        return;
    const bool isFromTelevision = message.msg[0] >> 4 == television;
    if (isFromTelevision && message.msg[1] == CEC_MSG_STANDBY)
        emit televisionSleeps();
}

void CecLink::send(unsigned char to, std::initializer_list<unsigned char> bytes)
{
    cec_msg message{};
    message.msg[0] = static_cast<__u8>(m_from << 4 | to);
    for (const unsigned char byte : bytes)
        message.msg[++message.len] = byte;
    ++message.len;
    if (!ask(CEC_TRANSMIT, &message))
        qDebug("CecLink,send,message=%02x,errno=%d", message.msg[1], errno);
}

} // namespace netcommon
