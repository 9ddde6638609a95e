#pragma once

#include "config/NASConfig.h"
#include "services/Text.h"

#include <QString>

#include <optional>

namespace harbrix {

/// How a share's binding stands to the network that the machine is on.
struct NetworkMatchResult {
    bool matched = false;     ///< the verdict of the strategy
    bool ipMatched = false;   ///< the address test, whatever the strategy
    bool ssidMatched = false; ///< the Wi-Fi name test, whatever the strategy
    NetworkBindingStrategy strategy = NetworkBindingStrategy::ipRange;

    bool operator==(const NetworkMatchResult&) const = default;
};

/// The address of a dotted text, in host byte order. Empty pieces and pieces that are no number are
/// passed over, so "10.x.0.0.1" is an address; what is left must be four values of at most 255.
[[nodiscard]] std::optional<quint32> parseIPv4(const QString& text);
/// The dotted text of an address in host byte order.
[[nodiscard]] QString formatIPv4(quint32 address);

/// Whether the address lies in a range such as "192.168.1.0/24". With a prefix of 1 to 30 the
/// network's own address and its broadcast address do not.
[[nodiscard]] bool isAddressInCIDR(const std::optional<QString>& address, const QString& range);

/// An empty range and an empty list match nothing; names of networks compare exactly.
[[nodiscard]] NetworkMatchResult evaluateBinding(const NASConfig::NetworkBindingConfig& binding,
                                                 const std::optional<QString>& ipAddress,
                                                 const std::optional<QString>& ssid);

/// The key of the text that tells the result to the user.
[[nodiscard]] TextKey statusTextKey(const NetworkMatchResult& result);

} // namespace harbrix
