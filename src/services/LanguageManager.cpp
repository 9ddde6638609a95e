#include "services/LanguageManager.h"

#include "platform/UserDefaults.h"
#include "services/Text.h"

namespace harbrix {
namespace {

struct LanguageRow {
    AppLanguage language;
    const char* rawValue;
    const char* displayName; ///< in the language itself
};

const std::vector<LanguageRow>& languageRows() {
    static const std::vector<LanguageRow> rows{
        {AppLanguage::system, "system", ""},      {AppLanguage::zhHans, "zh-Hans", "简体中文"},
        {AppLanguage::english, "en", "English"},  {AppLanguage::japanese, "ja", "日本語"},
        {AppLanguage::korean, "ko", "한국어"},    {AppLanguage::german, "de", "Deutsch"},
        {AppLanguage::french, "fr", "Français"},  {AppLanguage::spanish, "es", "Español"},
        {AppLanguage::italian, "it", "Italiano"}, {AppLanguage::portuguese, "pt", "Português"},
    };
    return rows;
}

const LanguageRow& rowOf(AppLanguage language) {
    return languageRows().at(static_cast<std::size_t>(language));
}

AppLanguage languageOf(const std::optional<QString>& raw) {
    for (const LanguageRow& row : languageRows())
        if (raw == QString::fromLatin1(row.rawValue))
            return row.language;
    return AppLanguage::system;
}

/// That of the system; where it tells no more than the language of texts (LANGUAGE), the one of
/// that language.
QLocale systemLocale() {
    const QLocale system = QLocale::system();
    if (system.language() != QLocale::C)
        return system;
    const QLocale ofTexts(system.uiLanguages().value(0));
    return ofTexts.language() == QLocale::C ? system : ofTexts;
}

} // namespace

const std::vector<AppLanguage>& allLanguages() {
    static const std::vector<AppLanguage> all = [] {
        std::vector<AppLanguage> languages;
        for (const LanguageRow& row : languageRows())
            languages.push_back(row.language);
        return languages;
    }();
    return all;
}

QString rawValue(AppLanguage language) {
    return QString::fromLatin1(rowOf(language).rawValue);
}

QString displayName(AppLanguage language) {
    if (language == AppLanguage::system)
        return text("language.system");
    return QString::fromUtf8(rowOf(language).displayName);
}

LanguageManager::LanguageManager(UserDefaults& defaults, QString translationsDirectory)
    : m_defaults(defaults), m_translationsDirectory(std::move(translationsDirectory)),
      m_locale(systemLocale()),
      m_selectedLanguage(languageOf(defaults.text(QLatin1String(appLanguageKey)))) {
    apply();
}

void LanguageManager::setSelectedLanguage(AppLanguage language) {
    if (language == m_selectedLanguage)
        return;
    m_selectedLanguage = language;
    apply();
}

void LanguageManager::apply() {
    const QString raw = rawValue(m_selectedLanguage);
    if (m_selectedLanguage == AppLanguage::system) {
        m_locale = systemLocale();
        m_defaults.remove(QLatin1String(appleLanguagesKey));
    } else {
        m_locale = QLocale(raw);
        m_defaults.set(QLatin1String(appleLanguagesKey), QStringList{raw});
    }
    m_defaults.set(QLatin1String(appLanguageKey), raw);
    // The system may name several languages, of which the first that has a table is taken.
    useTranslations(m_selectedLanguage == AppLanguage::system ? QLocale::system() : m_locale,
                    m_translationsDirectory);
    // What is given no locale goes by it too: the order of names, and the fields of numbers.
    QLocale::setDefault(m_locale);
    emit localeChanged();
}

} // namespace harbrix
