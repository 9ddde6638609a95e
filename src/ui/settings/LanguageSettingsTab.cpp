#include "ui/settings/LanguageSettingsTab.h"

#include "services/LanguageManager.h"
#include "services/Text.h"

#include <QComboBox>

namespace harbrix {

LanguageSettingsTab::LanguageSettingsTab(LanguageManager& languageManager, QWidget* parent)
    : SettingsTab(parent), m_languageManager(languageManager), m_picker(new QComboBox),
      m_app(makeSection()), m_pickerRow(m_app->addRow(m_picker)), m_restartHint(m_app->addNote()),
      m_supported(makeSection()), m_disclaimer(m_supported->addNote()) {
    m_picker->setObjectName(QString::fromLatin1(LanguageManager::appLanguageKey));
    for (const AppLanguage language : allLanguages())
        m_picker->addItem(displayName(language), int(language));
    connect(m_picker, &QComboBox::activated, this, [this] {
        m_languageManager.setSelectedLanguage(AppLanguage(m_picker->currentData().toInt()));
    });
    connect(&m_languageManager, &LanguageManager::localeChanged, this,
            &LanguageSettingsTab::showSelected);
    showSelected();
}

void LanguageSettingsTab::showSelected() {
    m_picker->setCurrentIndex(m_picker->findData(int(m_languageManager.selectedLanguage())));
}

void LanguageSettingsTab::retranslate() {
    m_app->setTitle(text("settings.language.app"));
    m_pickerRow->setText(text("settings.language.select"));
    m_picker->setItemText(m_picker->findData(int(AppLanguage::system)),
                          displayName(AppLanguage::system));
    m_restartHint->setText(text("settings.language.restartHint"));
    m_supported->setTitle(text("settings.language.supported"));
    m_disclaimer->setText(text("settings.language.disclaimer"));
}

} // namespace harbrix
