#include "app/ShareRequests.h"

#include "base/Json.h"
#include "ctl/RemoteInterface.h"

#include <QJsonArray>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

NASConfig named(const QString& name) {
    NASConfig config = NASConfig::blank();
    config.name = name;
    return config;
}

TEST(FindShare, ByIdInEitherCaseByNameElseRefused) {
    const NASConfig films = named("Films");
    const NASConfig twinA = named("Twin");
    const NASConfig twinB = named("Twin");
    // A share that is named like another one's id must not hide that one.
    const NASConfig trap = named(uuidText(films.id));
    const std::vector<NASConfig> all{trap, films, twinA, twinB};

    const std::vector<std::pair<QString, QUuid>> found{
        {"Films", films.id},
        {uuidText(films.id), films.id},
        {uuidText(twinB.id).toLower(), twinB.id},
    };
    for (const auto& [asked, id] : found) {
        const auto config = findShare(all, asked);
        ASSERT_TRUE(config) << asked.toStdString();
        EXPECT_EQ(config->id, id) << asked.toStdString();
    }
    for (const char* asked : {"films", "", "Films ", "5"})
        EXPECT_EQ(findShare(all, asked).error().errorName, remote::noSuchShareError) << asked;

    const auto twins = findShare(all, "Twin");
    ASSERT_FALSE(twins);
    EXPECT_EQ(twins.error().errorName, remote::ambiguousNameError);
    EXPECT_TRUE(twins.error().text.contains(uuidText(twinA.id)));
    EXPECT_TRUE(twins.error().text.contains(uuidText(twinB.id)));
}

TEST(ApplySettings, SetsWhatIsNamedAndKeepsTheRest) {
    NASConfigDraft before;
    before.name = "Old";
    before.address = "nas";
    before.password = "kept";
    const QJsonObject settings{{"name", "New / \"quoted\"\nname"},
                               {"auth", "guest"},
                               {"smbVersion", "2"},
                               {"enabled", false},
                               {"bindingStrategy", "combined"},
                               {"ssids", QJsonArray{" Home ", "Home", "Attic"}}};
    const auto after = applySettings(before, settings, {});
    ASSERT_TRUE(after);
    EXPECT_EQ(after->name, "New / \"quoted\"\nname");
    EXPECT_EQ(after->address, "nas");
    EXPECT_EQ(after->password, "kept");
    EXPECT_EQ(after->authMethod, AuthMethod::guest);
    EXPECT_EQ(after->smbVersion, SMBVersion::v2);
    EXPECT_FALSE(after->isEnabled);
    EXPECT_EQ(after->networkBinding.strategy, NetworkBindingStrategy::combined);
    EXPECT_EQ(after->networkBinding.ssidList, (QStringList{"Home", "Attic"}));

    EXPECT_EQ(applySettings(before, {}, "n\xc3\xa9u")->password, QStringLiteral("néu"));
}

TEST(ApplySettings, RefusesWhatItDoesNotUnderstandAndNamesIt) {
    const std::vector<std::pair<const char*, const char*>> table{
        {R"({"colour": "red"})", "colour"},
        {R"({"password": "secret"})", "password"},
        {R"({"name": 5})", "name"},
        {R"({"name": null})", "name"},
        {R"({"readOnly": "yes"})", "readOnly"},
        {R"({"protocol": "afp"})", "smb, nfs"},
        {R"({"smbVersion": 2})", "smbVersion"},
        {R"({"ssids": "Home"})", "ssids"},
        {R"({"ssids": ["Home", 7]})", "ssids"},
        {R"({"name": "A")", "no JSON text"},
        {R"(["name"])", "no JSON object"},
        {"", "no JSON text"},
    };
    for (const auto& [json, part] : table) {
        const auto settings = parseSettings(json);
        const auto draft =
            settings ? applySettings({}, *settings, {}) : std::unexpected(settings.error());
        ASSERT_FALSE(draft) << json;
        const Refusal refusal = draft.error();
        EXPECT_EQ(refusal.errorName, remote::invalidSettingError) << json;
        EXPECT_TRUE(refusal.text.contains(part)) << refusal.text.toStdString();
    }
    const auto notUtf8 = applySettings({}, {}, "caf\xe9");
    ASSERT_FALSE(notUtf8);
    EXPECT_FALSE(notUtf8.error().text.contains("caf"));
}

} // namespace
} // namespace harbrix
