#include "automation/NetworkBinding.h"

#include <limits>

namespace harbrix {

namespace {

/// A decimal number of 32 bits, with "+" before any value and "-" before zero. QString's own
/// conversion would let blanks and group separators pass.
std::optional<quint32> parseDecimal(QStringView text) {
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+'))
        text = text.sliced(1);
    if (text.isEmpty())
        return std::nullopt;
    quint64 value = 0;
    for (const QChar character : text) {
        if (character < u'0' || character > u'9')
            return std::nullopt;
        value = value * 10 + (character.unicode() - u'0');
        if (value > std::numeric_limits<quint32>::max())
            return std::nullopt;
    }
    if (negative && value != 0)
        return std::nullopt;
    return static_cast<quint32>(value);
}

} // namespace

std::optional<quint32> parseIPv4(const QString& text) {
    quint32 address = 0;
    int count = 0;
    for (const QString& piece : text.split(u'.', Qt::SkipEmptyParts)) {
        const auto value = parseDecimal(piece);
        if (!value)
            continue;
        if (*value > 255 || ++count > 4)
            return std::nullopt;
        address = address << 8 | *value;
    }
    return count == 4 ? std::optional(address) : std::nullopt;
}

QString formatIPv4(quint32 address) {
    return QStringLiteral("%1.%2.%3.%4")
        .arg(address >> 24)
        .arg(address >> 16 & 0xff)
        .arg(address >> 8 & 0xff)
        .arg(address & 0xff);
}

bool isAddressInCIDR(const std::optional<QString>& address, const QString& range) {
    if (!address)
        return false;
    const QStringList pieces = range.split(u'/', Qt::SkipEmptyParts);
    if (pieces.size() != 2)
        return false;
    const auto prefix = parseDecimal(pieces.at(1));
    if (!prefix || *prefix > 32)
        return false;
    const auto ip = parseIPv4(*address);
    const auto base = parseIPv4(pieces.at(0));
    if (!ip || !base)
        return false;

    const quint32 mask = *prefix == 0 ? 0 : ~quint32{0} << (32 - *prefix);
    if ((*ip & mask) != (*base & mask))
        return false;
    const bool hasReservedAddresses = *prefix >= 1 && *prefix <= 30;
    return !hasReservedAddresses || (*ip != (*ip & mask) && *ip != (*base | ~mask));
}

NetworkMatchResult evaluateBinding(const NASConfig::NetworkBindingConfig& binding,
                                   const std::optional<QString>& ipAddress,
                                   const std::optional<QString>& ssid) {
    NetworkMatchResult result;
    result.strategy = binding.strategy;
    result.ipMatched = !binding.ipRange.isEmpty() && isAddressInCIDR(ipAddress, binding.ipRange);
    result.ssidMatched = ssid && !ssid->isEmpty() && binding.ssidList.contains(*ssid);
    switch (binding.strategy) {
    case NetworkBindingStrategy::ipRange:
        result.matched = result.ipMatched;
        break;
    case NetworkBindingStrategy::ssid:
        result.matched = result.ssidMatched;
        break;
    case NetworkBindingStrategy::combined:
        result.matched = result.ipMatched && result.ssidMatched;
        break;
    }
    return result;
}

TextKey statusTextKey(const NetworkMatchResult& result) {
    constexpr TextKey ipMismatch("network.status.ipMismatch");
    constexpr TextKey ssidMismatch("network.status.ssidMismatch");
    if (result.matched)
        return "network.status.matched";
    switch (result.strategy) {
    case NetworkBindingStrategy::ipRange:
        return ipMismatch;
    case NetworkBindingStrategy::ssid:
        return ssidMismatch;
    case NetworkBindingStrategy::combined:
        break;
    }
    if (result.ipMatched)
        return ssidMismatch;
    if (result.ssidMatched)
        return ipMismatch;
    return "network.status.allMismatch";
}

} // namespace harbrix
