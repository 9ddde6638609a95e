#include "ui/settings/AdvancedMountTab.h"

#include "config/NASConfig.h"
#include "services/Text.h"
#include "ui/settings/SettingBinding.h"
#include "ui/widgets/Stepper.h"

#include <QComboBox>

namespace harbrix {
namespace {

QString secondsText(int seconds) {
    return fillPlaceholders(QStringLiteral("%llds"), {QString::number(seconds)});
}

QString retriesText(int count) {
    return fillPlaceholders(QStringLiteral("%lld"), {QString::number(count)});
}

QComboBox* makeVersionPicker(UserDefaults& defaults) {
    const QString key = QStringLiteral("mount.defaultSMBVersion");
    auto* picker = new QComboBox;
    picker->setObjectName(key);
    for (const auto& version : allCases(SMBVersion{}))
        picker->addItem(QString::fromUtf8(version.displayName),
                        QString::fromUtf8(version.rawValue));
    bindSetting(*picker, defaults, key);
    return picker;
}

} // namespace

AdvancedMountTab::AdvancedMountTab(UserDefaults& defaults, QWidget* parent)
    : SettingsTab(parent), m_smbVersion(makeVersionPicker(defaults)),
      m_connectionTimeout(
          makeStepper(defaults, QStringLiteral("mount.defaultTimeout"), secondsText)),
      m_retryCount(makeStepper(defaults, QStringLiteral("mount.defaultRetryCount"), retriesText)),
      m_retryInterval(
          makeStepper(defaults, QStringLiteral("mount.defaultRetryInterval"), secondsText)),
      m_smb(makeSection()), m_smbVersionRow(m_smb->addRow(m_smbVersion)), m_timeout(makeSection()),
      m_connectionTimeoutRow(m_timeout->addRow(m_connectionTimeout)),
      m_timeoutHint(m_timeout->addNote()), m_retry(makeSection()),
      m_retryCountRow(m_retry->addRow(m_retryCount)),
      m_retryIntervalRow(m_retry->addRow(m_retryInterval)), m_retryHint(m_retry->addNote()) {}

void AdvancedMountTab::retranslate() {
    m_smb->setTitle(text("settings.advanced.smb"));
    m_smbVersionRow->setText(text("settings.advanced.smbVersion"));
    m_timeout->setTitle(text("settings.advanced.timeout"));
    m_connectionTimeoutRow->setText(text("settings.advanced.connectionTimeout"));
    m_timeoutHint->setText(text("settings.advanced.timeout.hint"));
    m_retry->setTitle(text("settings.advanced.retry"));
    m_retryCountRow->setText(text("settings.advanced.retryCount"));
    m_retryIntervalRow->setText(text("settings.advanced.retryInterval"));
    m_retryHint->setText(text("settings.advanced.retry.hint"));
}

} // namespace harbrix
