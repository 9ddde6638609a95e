#pragma once

#include <QLocale>
#include <QObject>
#include <QString>

#include <vector>

namespace harbrix {

class UserDefaults;

enum class AppLanguage {
    system,
    zhHans,
    english,
    japanese,
    korean,
    german,
    french,
    spanish,
    italian,
    portuguese
};

[[nodiscard]] const std::vector<AppLanguage>& allLanguages();
/// The language code that is stored: "system", "zh-Hans", "en" and so on.
[[nodiscard]] QString rawValue(AppLanguage language);
[[nodiscard]] QString displayName(AppLanguage language);

/// The user's choice of language and the locale that follows from it. Main thread.
class LanguageManager : public QObject {
    Q_OBJECT

public:
    static constexpr auto appleLanguagesKey = "AppleLanguages";
    static constexpr auto appLanguageKey = "HarbrixSelectedLanguage";

    /// Applies the stored choice. `translationsDirectory` is where useTranslations() finds tables.
    explicit LanguageManager(UserDefaults& defaults,
                             QString translationsDirectory = QStringLiteral(":/translations"));

    [[nodiscard]] const QLocale& locale() const { return m_locale; }
    [[nodiscard]] AppLanguage selectedLanguage() const { return m_selectedLanguage; }
    /// Applies the choice if it differs from the former one.
    void setSelectedLanguage(AppLanguage language);

signals:
    /// The texts in force and the locale have changed; whoever shows texts shows them anew.
    void localeChanged();

private:
    void apply();

    UserDefaults& m_defaults;
    QString m_translationsDirectory;
    QLocale m_locale;
    AppLanguage m_selectedLanguage = AppLanguage::system;
};

} // namespace harbrix
