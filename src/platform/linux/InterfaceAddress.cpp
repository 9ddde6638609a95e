#include "platform/NetworkPathMonitor.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netdb.h>
#include <netinet/in.h>

#include <cstring>

namespace harbrix {

namespace {

std::optional<QString> numericText(const sockaddr* address) {
    const socklen_t length = address->sa_family == AF_INET    ? sizeof(sockaddr_in)
                             : address->sa_family == AF_INET6 ? sizeof(sockaddr_in6)
                                                              : 0;
    char text[NI_MAXHOST];
    if (::getnameinfo(address, length, text, sizeof text, nullptr, 0, NI_NUMERICHOST) != 0)
        return std::nullopt;
    return QString::fromLatin1(text);
}

std::optional<quint32> ipv4Mask(const sockaddr* netmask) {
    if (!netmask || netmask->sa_family != AF_INET)
        return std::nullopt;
    sockaddr_in mask = {};
    std::memcpy(&mask, netmask, sizeof mask);
    return ntohl(mask.sin_addr.s_addr);
}

} // namespace

std::vector<InterfaceAddress> currentInterfaceAddresses() {
    ifaddrs* list = nullptr;
    if (::getifaddrs(&list) != 0)
        return {};
    std::vector<InterfaceAddress> addresses;
    for (const ifaddrs* entry = list; entry; entry = entry->ifa_next) {
        InterfaceAddress address;
        address.name = QString::fromUtf8(entry->ifa_name);
        address.flags = entry->ifa_flags;
        address.family = entry->ifa_addr ? entry->ifa_addr->sa_family : AF_UNSPEC;
        if (entry->ifa_addr)
            address.address = numericText(entry->ifa_addr);
        address.netmask = ipv4Mask(entry->ifa_netmask);
        addresses.push_back(std::move(address));
    }
    ::freeifaddrs(list);
    return addresses;
}

} // namespace harbrix
