#include "ui/settings/SettingsView.h"

#include "services/LanguageManager.h"
#include "ui/settings/AdvancedMountTab.h"
#include "ui/settings/CacheSettingsTab.h"
#include "ui/settings/LanguageSettingsTab.h"
#include "ui/settings/LaunchTab.h"
#include "ui/settings/LoggingTab.h"
#include "ui/settings/NotificationSettingsTab.h"
#include "ui/settings/TabButton.h"
#include "ui/widgets/AccessibleRole.h"

#include <QButtonGroup>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QStackedWidget>

namespace harbrix {

SettingsView::SettingsView(const Environment& environment, QWidget* parent)
    : QWidget(parent), m_buttons(new QButtonGroup(this)), m_stack(new QStackedWidget) {
    setObjectName(QStringLiteral("settings"));
    setMinimumSize(smallest);
    addPage("character", "settings.tab.language",
            new LanguageSettingsTab(environment.languageManager));
    addPage("power", "settings.tab.launch",
            new LaunchTab(environment.settings.defaults, environment.settings.loginItem));
    addPage("bell", "settings.tab.notifications",
            new NotificationSettingsTab(environment.settings.notifications));
    addPage("internaldrive", "settings.tab.cache", new CacheSettingsTab(environment));
    addPage("gearshape.2", "settings.tab.advanced",
            new AdvancedMountTab(environment.settings.defaults));
    addPage("doc.text", "settings.tab.logging", new LoggingTab(environment));

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(QMargins());
    column->setSpacing(0);
    column->addWidget(buildBar());
    column->addWidget(new Divider);
    column->addWidget(m_stack, 1);
    connect(m_buttons, &QButtonGroup::idToggled, this, [this](int index, bool isOn) {
        if (isOn)
            showPage(index);
    });
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    connect(&environment.languageManager, &LanguageManager::localeChanged, this,
            &SettingsView::retranslate);
    retranslate();
    showTab(0);
}

void SettingsView::addPage(const char* symbol, TextKey title, SettingsTab* tab) {
    auto* button = new TabButton(QString::fromLatin1(symbol));
    button->setObjectName(QString::fromUtf8(title.entry().key));
    m_buttons->addButton(button, int(m_pages.size()));
    m_stack->addWidget(makeFormArea(tab));
    const auto number = int(m_pages.size());
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + number)), this),
            &QShortcut::activated, this, [this, number] { showTab(number); });
    m_pages.push_back({title, tab, button});
}

QWidget* SettingsView::buildBar() {
    auto* bar = new QWidget;
    bar->setObjectName(QStringLiteral("settingsTabs"));
    setAccessibleRole(*bar, QAccessible::PageTabList);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(spacing::medium, spacing::small, spacing::medium, spacing::small);
    row->setSpacing(spacing::tight);
    row->addStretch();
    for (const Page& page : m_pages)
        row->addWidget(page.button);
    row->addStretch();
    return bar;
}

void SettingsView::showTab(int index) {
    m_pages.at(std::size_t(index)).button->setChecked(true);
}

void SettingsView::showPage(int index) {
    m_stack->setCurrentIndex(index);
    if (isVisible())
        m_pages.at(std::size_t(index)).tab->appear();
}

void SettingsView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_pages.at(std::size_t(m_stack->currentIndex())).tab->appear();
}

void SettingsView::retranslate() {
    for (const Page& page : m_pages) {
        page.button->setText(text(page.title));
        page.tab->retranslate();
    }
}

QWidget* makeSettingsWindow(const Environment& environment) {
    auto* window = new SettingsView(environment);
    window->setAttribute(Qt::WA_DeleteOnClose);
    const auto setTitle = [window] { window->setWindowTitle(text("window.settings.title")); };
    QObject::connect(&environment.languageManager, &LanguageManager::localeChanged, window,
                     setTitle);
    setTitle();
    QRect place(QPoint(), SettingsView::defaultSize);
    place.moveCenter(window->screen()->availableGeometry().center());
    window->setGeometry(place);
    return window;
}

} // namespace harbrix
