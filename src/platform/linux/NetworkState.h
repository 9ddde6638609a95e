#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

namespace harbrix {

/// What the kernel tells of the network, as far as the path depends on it.
struct NetworkState {
    struct Link {
        int index = 0;
        unsigned flags = 0; ///< IFF_UP, IFF_RUNNING and IFF_LOOPBACK

        bool operator==(const Link&) const = default;
    };
    struct Address {
        int link = 0;
        int family = 0;
        bool isGlobal = false; ///< of global scope, and usable already
        QByteArray text;       ///< with the prefix length

        bool operator==(const Address&) const = default;
    };
    /// A unicast route of the main table.
    struct Route {
        int link = 0;
        int family = 0;
        QByteArray destination;
        QByteArray gateway;

        bool operator==(const Route&) const = default;
    };

    std::vector<Link> links;
    std::vector<Address> addresses;
    std::vector<Route> routes;

    bool operator==(const NetworkState&) const = default;
};

/// Whether an interface that is up and running, and not loopback, has a global address and a route
/// of that family.
[[nodiscard]] bool isSatisfied(const NetworkState& state);

/// Asks the kernel (rtnetlink(7)); nothing where that fails.
[[nodiscard]] std::optional<NetworkState> readNetworkState();

} // namespace harbrix
