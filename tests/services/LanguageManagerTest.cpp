#include "services/LanguageManager.h"

#include "platform/UserDefaults.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

class LanguageManagerTest : public testing::Test {
protected:
    ~LanguageManagerTest() override { QLocale::setDefault(QLocale::system()); }

    QTemporaryDir directory;
    UserDefaults defaults{directory.filePath(QStringLiteral("defaults.json"))};

    std::optional<QString> storedChoice() const {
        return defaults.text(QLatin1String(LanguageManager::appLanguageKey));
    }
    std::optional<QStringList> appleLanguages() const {
        return defaults.list(QLatin1String(LanguageManager::appleLanguagesKey));
    }
};

TEST_F(LanguageManagerTest, AnUnknownCodeCountsAsTheSystemAndIsOverwritten) {
    defaults.set(QLatin1String(LanguageManager::appLanguageKey), QStringLiteral("tlh"));
    defaults.set(QLatin1String(LanguageManager::appleLanguagesKey),
                 QStringList{QStringLiteral("tlh")});
    const LanguageManager manager(defaults);
    EXPECT_EQ(manager.selectedLanguage(), AppLanguage::system);
    EXPECT_EQ(manager.locale(), QLocale::system());
    EXPECT_EQ(storedChoice(), QStringLiteral("system"));
    EXPECT_EQ(appleLanguages(), std::nullopt);
}

TEST_F(LanguageManagerTest, AChoiceIsAppliedAtOnceAndKept) {
    {
        LanguageManager manager(defaults);
        int told = 0;
        QObject::connect(&manager, &LanguageManager::localeChanged, [&] { ++told; });
        manager.setSelectedLanguage(AppLanguage::zhHans);
        EXPECT_EQ(told, 1);
        EXPECT_EQ(manager.locale().language(), QLocale::Chinese);
        EXPECT_EQ(manager.locale().script(), QLocale::SimplifiedHanScript);
        EXPECT_EQ(QLocale(), manager.locale()) << "what is given no locale goes by it too";
        EXPECT_EQ(storedChoice(), QStringLiteral("zh-Hans"));
        EXPECT_EQ(appleLanguages(), QStringList{QStringLiteral("zh-Hans")});
    }
    LanguageManager next(defaults);
    EXPECT_EQ(next.selectedLanguage(), AppLanguage::zhHans);
    next.setSelectedLanguage(AppLanguage::system);
    EXPECT_EQ(appleLanguages(), std::nullopt);
}

TEST_F(LanguageManagerTest, ChoosingTheSameLanguageWritesNothing) {
    LanguageManager manager(defaults);
    manager.setSelectedLanguage(AppLanguage::german);
    int writes = 0;
    QObject::connect(&defaults, &UserDefaults::changed, [&] { ++writes; });
    manager.setSelectedLanguage(AppLanguage::german);
    EXPECT_EQ(writes, 0);
}

TEST(AppLanguage, EveryCodeIsALocaleOfItsLanguage) {
    const QList<QLocale::Language> expected{
        QLocale::Chinese, QLocale::English, QLocale::Japanese, QLocale::Korean,    QLocale::German,
        QLocale::French,  QLocale::Spanish, QLocale::Italian,  QLocale::Portuguese};
    ASSERT_EQ(allLanguages().size(), 10);
    for (qsizetype i = 0; i < expected.size(); ++i) {
        const AppLanguage language = allLanguages().at(i + 1);
        EXPECT_EQ(QLocale(rawValue(language)).language(), expected[i]);
    }
    EXPECT_EQ(displayName(AppLanguage::system).toStdString(), "跟随系统");
    EXPECT_EQ(displayName(AppLanguage::korean).toStdString(), "한국어");
}

} // namespace
} // namespace harbrix
