#include "config/NASConfig.h"

#include "base/Json.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

NASConfig fullConfig() {
    NASConfig config;
    config.id = QUuid(QStringLiteral("e621e1f8-c36c-495a-93fc-0c247a3e6e5f"));
    config.name = QStringLiteral("Fotos \"2024\"\n/é");
    config.isEnabled = false;
    config.address = QStringLiteral("nas.local");
    config.sharePath = QStringLiteral("a%20b");
    config.username = QStringLiteral("u");
    config.password = QStringLiteral("p");
    config.keychainIdentifier = QStringLiteral("k");
    config.mountOptions.smbVersion = SMBVersion::v2;
    config.mountOptions.readOnly = true;
    config.mountOptions.customMountPoint = QStringLiteral("/mnt/x");
    config.networkBinding.strategy = NetworkBindingStrategy::combined;
    config.networkBinding.ssidList = {QStringLiteral("Home"), QString()};
    return config;
}

TEST(NASConfig, IsCodedPlainly) {
    const QByteArray full =
        R"([{"address":"nas.local","authMethod":"password",)"
        R"("id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","isEnabled":false,)"
        R"("keychainIdentifier":"k","mountOptions":{"connectionTimeout":30,)"
        R"("customMountPoint":"/mnt/x","enableCaching":true,"readOnly":true,"retryCount":3,)"
        R"("retryInterval":10,"smbVersion":"2"},"name":"Fotos \"2024\"\n/é",)"
        R"("networkBinding":{"ipRange":"0.0.0.0/0","ssidList":["Home",""],)"
        R"("strategy":"combined"},"password":"p","protocol":"smb","sharePath":"a%20b",)"
        R"("username":"u"}])";
    EXPECT_EQ(encodeConfigs({fullConfig()}), full);
    EXPECT_EQ(decodeConfigs(full), std::vector{fullConfig()});

    NASConfig bare = NASConfig::blank();
    const QByteArray json = encodeConfigs({bare, fullConfig()});
    EXPECT_EQ(json.count("\"username\""), 1);
    EXPECT_EQ(json.count("\"password\":"), 1);
    EXPECT_EQ(json.count("\"customMountPoint\""), 1);
    EXPECT_EQ(decodeConfigs(json), (std::vector{bare, fullConfig()}));
    EXPECT_EQ(encodeConfigs({}), "[]");
}

TEST(NASConfig, OneDamagedRecordFailsTheList) {
    const QByteArray good = encodeConfigs({NASConfig::blank(), fullConfig()});
    const struct {
        const char* part;
        const char* replacement;
        const char* complaint; ///< nullptr where the list must still be read
    } rows[] = {
        {R"("retryInterval":10)", R"("retryInterval":2.5,"new":[])", nullptr},
        {R"("username":"u")", R"("username":null)", nullptr},
        {R"("smbVersion":"2")", R"("smbVersion":"3")", nullptr},
        {R"("smbVersion":"2")", R"("smbVersion":"v2")", "[1].mountOptions.smbVersion"},
        {R"("retryCount":3,)", "", "[0].mountOptions.retryCount"},
        {R"("retryCount":3)", R"("retryCount":3.5)", "[0].mountOptions.retryCount"},
        {R"("isEnabled":false)", R"("isEnabled":0)", "[1].isEnabled"},
        {R"("username":"u")", R"("username":1)", "[1].username"},
        {R"("strategy":"combined")", R"("strategy":null)", "[1].networkBinding.strategy"},
        {"E621E1F8-", "E621E1F8", "[1].id"},
        {R"("protocol":"smb")", R"("protocol":"afp")", "[0].protocol"},
    };
    for (const auto& row : rows) {
        QByteArray json = good;
        json.replace(row.part, row.replacement);
        ASSERT_NE(json, good) << row.part;
        const auto decoded = decodeConfigs(json);
        ASSERT_EQ(decoded.has_value(), row.complaint == nullptr) << row.replacement;
        if (!decoded) {
            EXPECT_TRUE(decoded.error().description.contains(QLatin1String(row.complaint)))
                << decoded.error().description.toStdString();
        }
    }
}

TEST(NASConfig, MountsUnderItsNameUnlessToldOtherwise) {
    NASConfig config = NASConfig::blank();
    config.name = QStringLiteral("../a b");
    const QString home = QStringLiteral("/home/u");
    EXPECT_EQ(mountPointPath(config, home).toStdString(), "/home/u/HarbrixVolumes/../a b");
    config.mountOptions.customMountPoint = QString();
    EXPECT_EQ(mountPointPath(config, home).toStdString(), "/home/u/HarbrixVolumes/../a b");
    config.mountOptions.customMountPoint = QStringLiteral("relative");
    EXPECT_EQ(mountPointPath(config, home).toStdString(), "relative");
}

TEST(NASConfig, AFormOnAnExistingRecordKeepsItsIdentity) {
    NASConfig existing = fullConfig();
    existing.mountOptions.retryCount = 99;
    existing.mountOptions.enableCaching = false;
    NASConfigDraft draft = draftOf(existing);
    draft.address = QStringLiteral("other");
    draft.customMountPoint.clear();
    draft.username.clear();

    NASConfig expected = fullConfig();
    expected.address = QStringLiteral("other");
    expected.username.reset();
    expected.mountOptions.customMountPoint.reset();
    EXPECT_EQ(buildConfig(draft, existing), expected);

    draft = draftOf(fullConfig());
    EXPECT_EQ(buildConfig(draft, fullConfig()), fullConfig());
}

TEST(NASConfig, AnNfsRecordHasNoUser) {
    NASConfigDraft draft = draftOf(fullConfig());
    draft.protocol = NASProtocol::nfs;
    draft.sharePath = QStringLiteral("/export");
    const NASConfig config = buildConfig(draft, std::nullopt);
    EXPECT_EQ(config.authMethod, AuthMethod::guest);
    EXPECT_EQ(config.username, std::nullopt);
    EXPECT_EQ(config.password, std::nullopt);
    EXPECT_EQ(config.keychainIdentifier.toStdString(), "nfs-nas.local-/export");
    EXPECT_FALSE(config.id.isNull());
    EXPECT_EQ(config.networkBinding, fullConfig().networkBinding);
}

TEST(NASConfig, ANewSmbRecordIsIdentifiedByServerShareAndUser) {
    NASConfigDraft draft = draftOf(fullConfig());
    const NASConfig first = buildConfig(draft, std::nullopt);
    const NASConfig second = buildConfig(draft, std::nullopt);
    EXPECT_NE(first.id, second.id);
    EXPECT_EQ(first.keychainIdentifier, second.keychainIdentifier);
    draft.username = QStringLiteral("v");
    EXPECT_NE(buildConfig(draft, std::nullopt).keychainIdentifier, first.keychainIdentifier);
}

} // namespace
} // namespace harbrix
