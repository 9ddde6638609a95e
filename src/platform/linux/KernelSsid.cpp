#include "platform/linux/JoinedWiFi.h"

#include <linux/nl80211.h>
#include <netlink/genl/ctrl.h>
#include <netlink/genl/genl.h>
#include <netlink/netlink.h>
#include <netlink/socket.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <array>
#include <memory>

namespace harbrix {

namespace {

int takeSsid(nl_msg* message, void* result) {
    std::array<nlattr*, NL80211_ATTR_MAX + 1> attributes = {};
    if (::genlmsg_parse(::nlmsg_hdr(message), 0, attributes.data(), NL80211_ATTR_MAX, nullptr) < 0)
        return NL_SKIP;
    const nlattr* type = attributes[NL80211_ATTR_IFTYPE];
    const nlattr* ssid = attributes[NL80211_ATTR_SSID];
    auto& name = *static_cast<std::optional<QString>*>(result);
    // An access point of our own has a name too, but nobody has joined it by that.
    if (!name && type && ssid && ::nla_get_u32(type) == NL80211_IFTYPE_STATION &&
        ::nla_len(ssid) > 0)
        name = ssidText(QByteArray(static_cast<const char*>(::nla_data(ssid)), ::nla_len(ssid)));
    return NL_OK;
}

} // namespace

std::optional<QString> kernelSsid() {
    const std::unique_ptr<nl_sock, decltype(&nl_socket_free)> socket(::nl_socket_alloc(),
                                                                     &::nl_socket_free);
    if (!socket || ::genl_connect(socket.get()) < 0)
        return std::nullopt;
    const timeval limit = {1, 0};
    ::setsockopt(::nl_socket_get_fd(socket.get()), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    const int family = ::genl_ctrl_resolve(socket.get(), NL80211_GENL_NAME);
    if (family < 0)
        return std::nullopt;
    const std::unique_ptr<nl_msg, decltype(&nlmsg_free)> request(::nlmsg_alloc(), &::nlmsg_free);
    std::optional<QString> name;
    if (!request ||
        !::genlmsg_put(request.get(), NL_AUTO_PORT, NL_AUTO_SEQ, family, 0, NLM_F_DUMP,
                       NL80211_CMD_GET_INTERFACE, 0) ||
        ::nl_socket_modify_cb(socket.get(), NL_CB_VALID, NL_CB_CUSTOM, &takeSsid, &name) < 0 ||
        ::nl_send_auto(socket.get(), request.get()) < 0 || ::nl_recvmsgs_default(socket.get()) < 0)
        return std::nullopt;
    return name;
}

} // namespace harbrix
