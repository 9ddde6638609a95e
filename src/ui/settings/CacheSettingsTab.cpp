#include "ui/settings/CacheSettingsTab.h"

#include "base/ByteCount.h"
#include "files/CacheDirectoryManager.h"
#include "files/CacheManager.h"
#include "platform/UserDefaults.h"
#include "services/LanguageManager.h"
#include "services/Text.h"
#include "ui/settings/SettingBinding.h"
#include "ui/widgets/FlatStyle.h"
#include "ui/widgets/SymbolIcon.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSlider>

#include <algorithm>

namespace harbrix {
namespace {

constexpr int smallestLimit = 100, largestLimit = 5000, limitStep = 100, usualLimit = 500;
constexpr int limitWidth = 80;
constexpr qint64 mebibyte = 1'048'576;

QString countText(qint64 count) {
    return fillPlaceholders(QStringLiteral("%lld"), {QString::number(count)});
}

QString limitText(qint64 value) {
    return fillPlaceholders(QStringLiteral("%lld MB"), {QString::number(value)});
}

QString hitRateText(const CacheStatistics& statistics) {
    const double lookUps = double(statistics.hitCount) + statistics.missCount;
    const double rate = lookUps > 0 ? statistics.hitCount / lookUps * 100.0 : 0.0;
    return QString::number(rate, 'f', 1) + QLatin1Char('%');
}

QPushButton* makeButton(const char* name, bool isDestructive) {
    auto* button = new QPushButton;
    button->setObjectName(QString::fromLatin1(name));
    button->setIcon(symbolIcon(QStringLiteral("trash"), isDestructive ? Tint::red : Tint::primary));
    if (isDestructive)
        FlatStyle::setDestructive(*button);
    return button;
}

} // namespace

CacheSettingsTab::CacheSettingsTab(const Environment& environment, QWidget* parent)
    : SettingsTab(parent), m_cache(environment.files.cache),
      m_directory(environment.settings.cacheDirectory), m_defaults(environment.settings.defaults),
      m_clock(environment.files.scheduler), m_locale(environment.languageManager.locale()),
      m_autoCleanup(makeSettingSwitch(m_defaults, CacheDirectoryManager::autoCleanupKey)),
      m_cleanupNow(makeButton("cleanupNow", false)), m_clearAll(makeButton("clearAll", true)),
      m_usage(makeSection()), m_entryCountRow(addFigure(*m_usage, "entryCount", m_entryCount)),
      m_totalSizeRow(addFigure(*m_usage, "totalSize", m_totalSize)),
      m_hitRateRow(addFigure(*m_usage, "hitRate", m_hitRate)),
      m_diskSpaceRow(addFigure(*m_usage, "diskSpace", m_diskSpace)), m_limit(makeSection()),
      m_cleanup(makeSection()), m_autoCleanupRow(m_cleanup->addRow(m_autoCleanup)),
      m_lastCleanupRow(addFigure(*m_cleanup, "lastCleanup", m_lastCleanup)),
      m_lastRemovedRow(addFigure(*m_cleanup, "lastRemoved", m_lastRemoved)) {
    m_limit->addContent(buildSlider());
    makeSection()->addButtons({m_cleanupNow, m_clearAll});
    connect(m_autoCleanup, &QCheckBox::clicked, this, [this](bool isOn) {
        if (isOn)
            m_directory.startPeriodicCleanup();
        else
            m_directory.stopPeriodicCleanup();
    });
    connect(m_cleanupNow, &QPushButton::clicked, &m_directory,
            &CacheDirectoryManager::launchCleanup);
    connect(m_clearAll, &QPushButton::clicked, this,
            [this] { m_cache.launch(m_cache.clearAllCache()); });
    connect(&m_cache, &CacheManager::changed, this, &CacheSettingsTab::showFigures);
    connect(&m_directory, &CacheDirectoryManager::changed, this, &CacheSettingsTab::showFigures);
    connect(&environment.languageManager, &LanguageManager::localeChanged, this,
            [this, &language = environment.languageManager] { m_locale = language.locale(); });
}

FormRow* CacheSettingsTab::addFigure(FormSection& section, const char* name, TextLabel*& figure) {
    figure = new TextLabel(TextRole::body, Tint::secondary, TextLabel::Lines::One);
    figure->setObjectName(QString::fromLatin1(name));
    figure->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return section.addRow(figure);
}

QWidget* CacheSettingsTab::buildSlider() {
    m_maxSize = new QSlider(Qt::Horizontal);
    m_maxSize->setObjectName(QString::fromLatin1(CacheManager::maxCacheSizeKey));
    m_maxSize->setRange(smallestLimit, largestLimit);
    m_maxSize->setSingleStep(limitStep);
    m_maxSize->setPageStep(limitStep);
    m_maxSizeText = new TextLabel(TextRole::body, Tint::secondary, TextLabel::Lines::One);
    m_maxSizeText->setObjectName(QStringLiteral("maxSizeText"));
    m_maxSizeText->setMinimumWidth(limitWidth);
    m_maxSizeText->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(QMargins());
    layout->setSpacing(spacing::medium);
    layout->addWidget(m_maxSize, 1);
    layout->addWidget(m_maxSizeText);

    // What is read back moves the slider, which has to wait until the user lets go of it.
    connect(m_maxSize, &QSlider::valueChanged, this, &CacheSettingsTab::storeMaxSize);
    connect(m_maxSize, &QSlider::sliderReleased, this, &CacheSettingsTab::readMaxSize);
    connect(&m_defaults, &UserDefaults::changed, this, [this](const QString& key) {
        if (key == QLatin1String(CacheManager::maxCacheSizeKey) && !m_maxSize->isSliderDown())
            readMaxSize();
    });
    readMaxSize();
    return row;
}

void CacheSettingsTab::readMaxSize() {
    const double stored = m_defaults.number(CacheManager::maxCacheSizeKey).value_or(usualLimit);
    constexpr double most = 9.2e18;
    const QSignalBlocker silence(m_maxSize);
    m_maxSize->setValue(static_cast<int>(std::clamp<double>(stored, smallestLimit, largestLimit)));
    m_maxSizeText->setText(limitText(static_cast<qint64>(std::clamp(stored, -most, most))));
}

void CacheSettingsTab::storeMaxSize(int mebibytes) {
    const int chosen = (mebibytes + limitStep / 2) / limitStep * limitStep;
    m_maxSizeText->setText(limitText(chosen));
    m_defaults.set(CacheManager::maxCacheSizeKey, chosen * mebibyte);
    m_cache.updateStatistics();
}

void CacheSettingsTab::showFigures() {
    const CacheStatistics& statistics = m_cache.statistics();
    m_entryCount->setText(countText(statistics.entryCount));
    m_totalSize->setText(byteCountText(statistics.totalSize, m_locale));
    m_hitRate->setText(hitRateText(statistics));
    m_diskSpace->setText(byteCountText(m_directory.availableDiskSpace(), m_locale));
    m_diskSpace->setTint(m_directory.isLowDiskSpace() ? Tint::red : Tint::secondary);
    const auto& lastCleanup = m_directory.lastCleanupDate();
    m_lastCleanupRow->setVisible(lastCleanup.has_value());
    m_lastRemovedRow->setVisible(lastCleanup.has_value());
    if (lastCleanup)
        m_lastCleanup->setText((*m_dates)(*lastCleanup, m_clock.wallClock()));
    m_lastRemoved->setText(countText(m_directory.lastCleanupRemovedCount()));
}

void CacheSettingsTab::appear() {
    m_cache.updateStatistics();
    m_directory.launch(m_directory.updateDiskSpace());
    showFigures();
}

void CacheSettingsTab::retranslate() {
    m_dates.emplace(RelativeDateText::Style::WideNamed, m_locale);
    m_usage->setTitle(text("settings.cache.usage"));
    m_entryCountRow->setText(text("settings.cache.entryCount"));
    m_totalSizeRow->setText(text("settings.cache.totalSize"));
    m_hitRateRow->setText(text("settings.cache.hitRate"));
    m_diskSpaceRow->setText(text("settings.cache.diskSpace"));
    m_limit->setTitle(text("settings.cache.maxSize"));
    m_maxSize->setAccessibleName(text("settings.cache.maxSize"));
    m_cleanup->setTitle(text("settings.cache.autoCleanup"));
    m_autoCleanupRow->setText(text("settings.cache.autoCleanup.toggle"));
    m_lastCleanupRow->setText(text("settings.cache.lastCleanup"));
    m_lastRemovedRow->setText(text("settings.cache.lastRemoved"));
    m_cleanupNow->setText(text("settings.cache.cleanupNow"));
    m_clearAll->setText(text("settings.cache.clearAll"));
    showFigures();
}

} // namespace harbrix
