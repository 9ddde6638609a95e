#include "automation/NetworkBinding.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

TEST(ParseIPv4, KeepsFourValuesAndPassesOverTheRest) {
    const std::vector<std::pair<QString, std::optional<quint32>>> rows{
        {"192.168.1.5", 0xC0A80105},
        {"0.0.0.0", 0},
        {"255.255.255.255", 0xFFFFFFFF},
        {"10.x.0.0.1", 0x0A000001},
        {"..10..0.0.1.", 0x0A000001},
        {"+10.0.0.+1", 0x0A000001},
        {"10.-0.0.1", 0x0A000001},
        {"10.-1.0.0.1", 0x0A000001},
        {"010.0.0.001", 0x0A000001},
        {"10.4294967296.0.0.1", 0x0A000001}, // no 32-bit value, so no value at all
        {"10.4294967295.0.0.1", std::nullopt},
        {"1.2.3.4.5", std::nullopt},
        {"1.2.3", std::nullopt},
        {"1.2.3.256", std::nullopt},
        {"1.2.3. 4", std::nullopt},
        {"1.2.3.+", std::nullopt},
        {"1.2.3.１", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(parseIPv4(text), expected) << text.toStdString();
}

TEST(AddressInCIDR, Table) {
    struct Row {
        std::optional<QString> address;
        QString range;
        bool expected;
    };
    const std::vector<Row> rows{
        {"192.168.1.5", "192.168.1.0/24", true},
        {"192.168.1.5", "192.168.1.77/24", true},
        {"192.168.1.0", "192.168.1.0/24", false},
        {"192.168.1.255", "192.168.1.0/24", false},
        {"192.168.2.5", "192.168.1.0/24", false},
        {"192.168.1.5", "192.168.1.5/32", true},
        {"192.168.1.4", "192.168.1.4/31", true},
        {"192.168.1.5", "192.168.1.4/31", true},
        {"192.168.1.4", "192.168.1.4/30", false},
        {"192.168.1.7", "192.168.1.4/30", false},
        {"192.168.1.6", "192.168.1.4/30", true},
        {"127.255.255.255", "0.0.0.0/1", false},
        {"8.8.8.8", "0.0.0.0/0", true},
        {"0.0.0.0", "0.0.0.0/0", true},
        {"255.255.255.255", "0.0.0.0/0", true},
        {std::nullopt, "0.0.0.0/0", false},
        {"192.168.1.5", "192.168.1.0/33", false},
        {"192.168.1.5", "192.168.1.0/-1", false},
        {"192.168.1.5", "192.168.1.0/2a", false},
        {"192.168.1.5", "192.168.1.0/99999999999999999999", false},
        {"192.168.1.5", "192.168.1.0//24", true},
        {"192.168.1.5", "/192.168.1.0/24/", true},
        {"192.168.1.5", "192.168.1.0/+24", true},
        {"192.168.1.5", "192.168.1.5", false},
        {"192.168.1.5", "192.168.1.0/24/8", false},
        {"192.168.1.5", " 192.168.1.0/24", false},
        {"192.168.1.5", "192.168.1.0/24 ", false},
        {"192.168.1.5", "", false},
        {"no address", "0.0.0.0/0", false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(isAddressInCIDR(row.address, row.range), row.expected)
            << row.address.value_or("none").toStdString() << " in " << row.range.toStdString();
}

struct BindingRow {
    NetworkBindingStrategy strategy;
    QString range;
    QStringList names;
    std::optional<QString> address;
    std::optional<QString> ssid;
    NetworkMatchResult expected;
    const char* key;
};

TEST(EvaluateBinding, VerdictAndTextOfEachStrategy) {
    using enum NetworkBindingStrategy;
    const QString range = "192.168.1.0/24";
    const QString inside = "192.168.1.5";
    const QString outside = "10.0.0.5";
    const QStringList home{"Cabin", "Home"};
    const auto ip = "network.status.ipMismatch";
    const auto name = "network.status.ssidMismatch";
    const auto ok = "network.status.matched";
    const std::vector<BindingRow> rows{
        {ipRange, range, {}, inside, {}, {true, true, false, ipRange}, ok},
        {ipRange, range, home, outside, "Home", {false, false, true, ipRange}, ip},
        {ipRange, "", home, inside, "Home", {false, false, true, ipRange}, ip},
        {ipRange, "0.0.0.0/0", {}, {}, {}, {false, false, false, ipRange}, ip},
        {ssid, range, home, outside, "Home", {true, false, true, ssid}, ok},
        {ssid, range, home, inside, "home", {false, true, false, ssid}, name},
        {ssid, range, home, inside, "Home ", {false, true, false, ssid}, name},
        {ssid, range, {}, inside, "Home", {false, true, false, ssid}, name},
        {ssid, range, {""}, inside, "", {false, true, false, ssid}, name},
        {ssid, range, home, {}, {}, {false, false, false, ssid}, name},
        {combined, range, home, inside, "Cabin", {true, true, true, combined}, ok},
        {combined, range, home, inside, {}, {false, true, false, combined}, name},
        {combined, range, home, outside, "Home", {false, false, true, combined}, ip},
        {combined,
         range,
         home,
         {},
         {},
         {false, false, false, combined},
         "network.status.allMismatch"},
        {combined, "", home, inside, "Home", {false, false, true, combined}, ip},
    };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const BindingRow& row = rows[i];
        const auto result =
            evaluateBinding({row.strategy, row.range, row.names}, row.address, row.ssid);
        EXPECT_EQ(result, row.expected) << "row " << i;
        EXPECT_STREQ(statusTextKey(result).entry().key, row.key) << "row " << i;
    }
}

} // namespace
} // namespace harbrix
