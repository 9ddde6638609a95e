#include "ui/main/MainWindowView.h"

#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "platform/UserDefaults.h"
#include "services/LanguageManager.h"
#include "services/Text.h"
#include "ui/about/AboutView.h"
#include "ui/form/FormDrafts.h"
#include "ui/form/NASDetailView.h"
#include "ui/main/MountedFoldersView.h"
#include "ui/main/ShareListView.h"
#include "ui/widgets/EmptyHint.h"
#include "ui/widgets/FlatStyle.h"
#include "ui/widgets/NoticeBar.h"
#include "ui/widgets/Panel.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/TextLabel.h"
#include "ui/widgets/Windows.h"

#include <QAction>
#include <QCoreApplication>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolBar>
#include <QVBoxLayout>

namespace harbrix {
namespace {

constexpr int narrowestSidebar = 180;
constexpr int idealSidebar = 220;

} // namespace

MainWindowView::MainWindowView(const Environment& environment)
    : m_environment(environment), m_model(m_environment) {
    buildToolbar();
    auto* columns = new QSplitter(Qt::Horizontal);
    columns->setObjectName(QStringLiteral("columns"));
    columns->addWidget(buildSidebar());
    columns->addWidget(buildDetail());
    columns->setChildrenCollapsible(false);
    columns->setStretchFactor(0, 0);
    columns->setStretchFactor(1, 1);
    columns->setSizes({idealSidebar, 10 * idealSidebar});
    m_notice = new NoticeBar;
    m_notice->setObjectName(QStringLiteral("notice"));
    auto* content = new QWidget;
    auto* rows = new QVBoxLayout(content);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(m_notice);
    rows->addWidget(columns, 1);
    setCentralWidget(content);

    connect(&m_environment.settings.defaults, &UserDefaults::writeErrorChanged, this,
            &MainWindowView::showSettingsFault);
    connect(&m_environment.configStore, &NASConfigStore::changed, this,
            &MainWindowView::showDetail);
    connect(&m_environment.appState, &AppStateManager::changed, this, &MainWindowView::showDetail);
    connect(&m_environment.languageManager, &LanguageManager::localeChanged, this,
            &MainWindowView::retranslate);
    retranslate();
    showDetail();
}

void MainWindowView::buildToolbar() {
    auto* bar = new QToolBar;
    bar->setObjectName(QStringLiteral("toolbar"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    bar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    addToolBar(bar);
    setContextMenuPolicy(Qt::NoContextMenu);

    auto* gap = new QWidget;
    gap->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(gap);

    m_about = addToolbarItem(*bar, "openAbout", "info.circle");
    connect(m_about, &QAction::triggered, this, &MainWindowView::openAbout);
    m_settings = addToolbarItem(*bar, "openSettings", "gear");
    m_settings->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    connect(m_settings, &QAction::triggered, this,
            [this] { m_environment.openWindow(QStringLiteral("settings")); });

    m_add = new QPushButton;
    m_add->setObjectName(QStringLiteral("addNAS"));
    m_add->setIcon(symbolIcon(QStringLiteral("plus"), Tint::onAccent));
    FlatStyle::setProminent(*m_add);
    connect(m_add, &QPushButton::clicked, this, &MainWindowView::add);
    bar->addWidget(m_add);

    connect(new QShortcut(QKeySequence::New, this), &QShortcut::activated, this,
            &MainWindowView::add);
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    // Where the desktop has no place for a status item, this is the way to end the program.
    connect(new QShortcut(QKeySequence::Quit, this), &QShortcut::activated, qApp,
            &QCoreApplication::quit);
}

QAction* MainWindowView::addToolbarItem(QToolBar& bar, const char* name, const char* symbol) {
    QAction* item = bar.addAction(symbolIcon(QString::fromLatin1(symbol), Tint::secondary), {});
    item->setObjectName(QString::fromLatin1(name));
    QWidget* button = bar.widgetForAction(item);
    button->setObjectName(QString::fromLatin1(name) + QStringLiteral("Button"));
    button->setFocusPolicy(Qt::TabFocus);
    return item;
}

QWidget* MainWindowView::buildSidebar() {
    m_noShares = new EmptyHint({QStringLiteral("externaldrive.badge.plus"), 32, TextRole::caption});
    m_noShares->setObjectName(QStringLiteral("noShares"));

    m_listTitle = new TextLabel(TextRole::caption, Tint::secondary, TextLabel::Lines::One);
    m_listTitle->setContentsMargins(spacing::regular, 0, spacing::regular, 0);
    m_list = new ShareListView(m_model);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (current.isValid())
                    setSelectedConfigID(m_model.row(current.row()).id);
            });
    connect(m_list, &ShareListView::openRequested, this, m_environment.openUrl);
    connect(m_list, &ShareListView::discardRequested, this, &MainWindowView::discard);
    connect(m_list, &ShareListView::deleteRequested, this, &MainWindowView::remove);

    auto* shares = new QWidget;
    auto* column = new QVBoxLayout(shares);
    column->setContentsMargins(0, spacing::medium, 0, 0);
    column->setSpacing(spacing::tight);
    column->addWidget(m_listTitle);
    column->addWidget(m_list);

    m_sidebar = new QStackedWidget;
    m_sidebar->addWidget(m_noShares);
    m_sidebar->addWidget(shares);
    auto* panel = new Panel(Tint::sidebar);
    panel->setObjectName(QStringLiteral("sidebar"));
    panel->setMinimumWidth(narrowestSidebar);
    panel->setContent(m_sidebar);
    return panel;
}

QWidget* MainWindowView::buildDetail() {
    m_hint = new EmptyHint(
        {QStringLiteral("externaldrive.connected.to.line.below"), 48, TextRole::title3});
    m_hint->setObjectName(QStringLiteral("detailHint"));
    m_folders = new MountedFoldersView;
    connect(m_folders, &MountedFoldersView::openRequested, this, m_environment.openUrl);
    m_detail = new QStackedWidget;
    m_detail->setObjectName(QStringLiteral("detail"));
    m_detail->addWidget(m_hint);
    m_detail->addWidget(m_folders);
    return m_detail;
}

void MainWindowView::add() {
    const NASConfig config = NASConfig::blank();
    m_environment.configStore.add(config);
    setSelectedConfigID(config.id);
    if (m_form)
        m_form->focusFirstField();
}

void MainWindowView::remove(const QUuid& id) {
    m_environment.configStore.remove(id);
    if (m_selectedConfigID == id)
        setSelectedConfigID(std::nullopt);
}

void MainWindowView::discard(const QUuid& id) {
    if (m_form && m_formID == id)
        m_form->discardChanges();
    else
        m_environment.drafts.drop(id);
}

void MainWindowView::openAbout() {
    const QString title = text("window.about.title");
    if (QWidget* open = findTopLevelWindow([&](const QWidget& window) {
            return window.isVisible() && window.windowTitle() == title;
        }))
        return bringToFront(*open);
    bringToFront(*makeAboutWindow(m_environment));
}

void MainWindowView::setSelectedConfigID(const std::optional<QUuid>& id) {
    if (id == m_selectedConfigID)
        return;
    m_selectedConfigID = id;
    showDetail();
}

void MainWindowView::showSettingsFault() {
    const UserDefaults& defaults = m_environment.settings.defaults;
    const auto error = defaults.lastWriteError();
    m_notice->setText(
        error ? formatted("main.notSaved",
                          {defaults.filePath() + QStringLiteral(" (") + error->description + u')'})
              : QString());
}

void MainWindowView::showSelection() {
    const QModelIndex wanted =
        m_selectedConfigID ? m_model.indexOf(*m_selectedConfigID) : QModelIndex();
    if (wanted.isValid()) {
        if (m_list->currentIndex() != wanted)
            m_list->setCurrentIndex(wanted);
    } else {
        m_list->selectionModel()->clear();
    }
}

void MainWindowView::showDetail() {
    const auto& configs = m_environment.configStore.configs();
    const NASStatuses& statuses = m_environment.appState.nasStatuses();
    m_sidebar->setCurrentIndex(configs.empty() ? 0 : 1);
    showSelection();
    switch (detailContent(m_selectedConfigID, configs, statuses)) {
    case DetailContent::form:
        showForm(*m_environment.configStore.config(*m_selectedConfigID));
        return;
    case DetailContent::mountedFolders:
        m_folders->setShares(mountedShares(configs, statuses));
        m_detail->setCurrentWidget(m_folders);
        break;
    case DetailContent::hint:
        m_detail->setCurrentWidget(m_hint);
        break;
    }
    closeForm();
}

void MainWindowView::showForm(const NASConfig& config) {
    if (m_form && m_formID == config.id)
        return;
    closeForm();
    m_form =
        new NASDetailView(m_environment, config, [this] { setSelectedConfigID(std::nullopt); });
    m_formID = config.id;
    m_detail->addWidget(m_form);
    m_detail->setCurrentWidget(m_form);
}

void MainWindowView::closeForm() {
    if (!m_form)
        return;
    // It may be one of its own buttons that closes it.
    m_detail->removeWidget(m_form);
    m_form->hide();
    m_form->deleteLater();
    m_form = nullptr;
    m_formID.reset();
}

void MainWindowView::retranslate() {
    m_about->setText(text("main.about"));
    m_about->setToolTip(text("main.about"));
    m_settings->setText(text("main.openSettings"));
    m_settings->setToolTip(text("main.openSettings"));
    m_add->setText(text("main.addNAS"));
    m_add->setToolTip(text("main.addNASTooltip"));
    m_noShares->setTexts(text("main.noConfigs"));
    m_listTitle->setText(text("main.nasList"));
    m_list->setAccessibleName(text("main.nasList"));
    m_hint->setTexts(text("main.selectOrAddNAS"), text("main.emptyDetailHint"));
    m_folders->retranslate();
    showSettingsFault();
}

} // namespace harbrix
