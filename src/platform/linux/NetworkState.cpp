#include "platform/linux/NetworkState.h"

#include <linux/if_addr.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <netlink/cache.h>
#include <netlink/netlink.h>
#include <netlink/route/addr.h>
#include <netlink/route/link.h>
#include <netlink/route/route.h>

#include <algorithm>
#include <memory>

namespace harbrix {

namespace {

using Socket = std::unique_ptr<nl_sock, decltype(&nl_socket_free)>;
using Cache = std::unique_ptr<nl_cache, decltype(&nl_cache_free)>;

QByteArray textOf(nl_addr* address) {
    char buffer[128];
    return address ? QByteArray(::nl_addr2str(address, buffer, sizeof buffer)) : QByteArray();
}

template <typename Visit>
void forEach(nl_cache* cache, Visit visit) {
    for (nl_object* row = ::nl_cache_get_first(cache); row; row = ::nl_cache_get_next(row))
        visit(row);
}

void addLink(NetworkState& state, nl_object* row) {
    auto* link = reinterpret_cast<rtnl_link*>(row);
    constexpr unsigned relevant = IFF_UP | IFF_RUNNING | IFF_LOOPBACK;
    state.links.push_back({::rtnl_link_get_ifindex(link), ::rtnl_link_get_flags(link) & relevant});
}

void addAddress(NetworkState& state, nl_object* row) {
    auto* address = reinterpret_cast<rtnl_addr*>(row);
    // An IPv6 address cannot be used while it is checked for duplicates, nor after one was found.
    constexpr unsigned unusable = IFA_F_TENTATIVE | IFA_F_DADFAILED;
    const bool isUsable = (::rtnl_addr_get_flags(address) & unusable) == 0;
    state.addresses.push_back({::rtnl_addr_get_ifindex(address), ::rtnl_addr_get_family(address),
                               isUsable && ::rtnl_addr_get_scope(address) == RT_SCOPE_UNIVERSE,
                               textOf(::rtnl_addr_get_local(address))});
}

void addRoute(NetworkState& state, nl_object* row) {
    auto* route = reinterpret_cast<rtnl_route*>(row);
    if (::rtnl_route_get_table(route) != RT_TABLE_MAIN ||
        ::rtnl_route_get_type(route) != RTN_UNICAST)
        return;
    for (int hop = 0; hop < ::rtnl_route_get_nnexthops(route); ++hop) {
        rtnl_nexthop* next = ::rtnl_route_nexthop_n(route, hop);
        state.routes.push_back({::rtnl_route_nh_get_ifindex(next), ::rtnl_route_get_family(route),
                                textOf(::rtnl_route_get_dst(route)),
                                textOf(::rtnl_route_nh_get_gateway(next))});
    }
}

} // namespace

bool isSatisfied(const NetworkState& state) {
    const auto canCarry = [&](int index) {
        constexpr unsigned wanted = IFF_UP | IFF_RUNNING;
        return std::ranges::any_of(state.links, [&](const NetworkState::Link& link) {
            return link.index == index && (link.flags & (wanted | IFF_LOOPBACK)) == wanted;
        });
    };
    const auto hasRoute = [&](const NetworkState::Address& address) {
        return std::ranges::any_of(state.routes, [&](const NetworkState::Route& route) {
            return route.link == address.link && route.family == address.family;
        });
    };
    return std::ranges::any_of(state.addresses, [&](const NetworkState::Address& address) {
        return address.isGlobal && canCarry(address.link) && hasRoute(address);
    });
}

std::optional<NetworkState> readNetworkState() {
    const Socket socket(::nl_socket_alloc(), &::nl_socket_free);
    if (!socket || ::nl_connect(socket.get(), NETLINK_ROUTE) < 0)
        return std::nullopt;
    nl_cache* links = nullptr;
    nl_cache* addresses = nullptr;
    nl_cache* routes = nullptr;
    const bool complete = ::rtnl_link_alloc_cache(socket.get(), AF_UNSPEC, &links) == 0 &&
                          ::rtnl_addr_alloc_cache(socket.get(), &addresses) == 0 &&
                          ::rtnl_route_alloc_cache(socket.get(), AF_UNSPEC, 0, &routes) == 0;
    const Cache ownLinks(links, &::nl_cache_free);
    const Cache ownAddresses(addresses, &::nl_cache_free);
    const Cache ownRoutes(routes, &::nl_cache_free);
    if (!complete)
        return std::nullopt;
    NetworkState state;
    forEach(links, [&](nl_object* row) { addLink(state, row); });
    forEach(addresses, [&](nl_object* row) { addAddress(state, row); });
    forEach(routes, [&](nl_object* row) { addRoute(state, row); });
    return state;
}

} // namespace harbrix
