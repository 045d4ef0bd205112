#include "routetable.h"

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace netcommon {

namespace {

constexpr unsigned deadFlags = RTNH_F_DEAD | RTNH_F_LINKDOWN;

// A multipath route leads out while the link of one hop is up.
bool hasLivingHop(const rtattr *attribute)
{
    auto *hop = static_cast<const rtnexthop *>(RTA_DATA(attribute));
    int left = int(RTA_PAYLOAD(attribute));
    while (left >= int(sizeof *hop) && hop->rtnh_len >= sizeof *hop && hop->rtnh_len <= left) {
        if (!(hop->rtnh_flags & deadFlags))
            return true;
        left -= int(RTNH_ALIGN(hop->rtnh_len));
        hop = RTNH_NEXT(hop);
    }
    return false;
}

bool isLivingDefault(const nlmsghdr *header)
{
    if (header->nlmsg_len < NLMSG_LENGTH(sizeof(rtmsg)))
        return false;
    auto *route = static_cast<const rtmsg *>(NLMSG_DATA(header));
    if (route->rtm_dst_len != 0 || route->rtm_type != RTN_UNICAST)
        return false;
    int left = int(header->nlmsg_len - NLMSG_LENGTH(sizeof(rtmsg)));
    for (auto *attribute = RTM_RTA(route); RTA_OK(attribute, left); attribute = RTA_NEXT(attribute, left))
        if (attribute->rta_type == RTA_MULTIPATH)
            return hasLivingHop(attribute);
    return !(route->rtm_flags & deadFlags);
}

bool readAll(int descriptor, int family, RouteDump &dump)
{
    struct {
        nlmsghdr header;
        rtmsg route;
    } request{};
    request.header.nlmsg_len = NLMSG_LENGTH(sizeof(rtmsg));
    request.header.nlmsg_type = RTM_GETROUTE;
    request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request.route.rtm_family = static_cast<unsigned char>(family);
    if (::send(descriptor, &request, request.header.nlmsg_len, 0) < 0)
        return false;
    dump.isComplete = false;
    QByteArray datagram(64 * 1024, Qt::Uninitialized);
    while (!dump.isComplete) {
        const auto size = ::recv(descriptor, datagram.data(), size_t(datagram.size()), 0);
        if (size <= 0)
            return false;
        dump.read(datagram.left(int(size)));
    }
    return true;
}

} // namespace

void RouteDump::read(const QByteArray &datagram)
{
    auto left = unsigned(datagram.size());
    for (auto *header = reinterpret_cast<const nlmsghdr *>(datagram.constData()); NLMSG_OK(header, left);
         header = NLMSG_NEXT(header, left)) {
        if (header->nlmsg_type == NLMSG_DONE || header->nlmsg_type == NLMSG_ERROR)
            isComplete = true;
        else if (header->nlmsg_type == RTM_NEWROUTE && isLivingDefault(header))
            hasDefaultRoute = true;
    }
}

bool hasDefaultRoute(bool *isKnown)
{
    RouteDump dump;
    const int descriptor = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    const timeval limit{1, 0};
    *isKnown = descriptor >= 0 && ::setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit) == 0 &&
               readAll(descriptor, AF_INET, dump) && readAll(descriptor, AF_INET6, dump);
    if (descriptor >= 0)
        ::close(descriptor);
    return dump.hasDefaultRoute;
}

} // namespace netcommon
