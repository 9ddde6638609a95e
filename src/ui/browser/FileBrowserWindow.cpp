#include "ui/browser/FileBrowserWindow.h"

#include "files/FileBrowserState.h"
#include "services/LanguageManager.h"
#include "services/Text.h"
#include "ui/browser/FileBrowserView.h"
#include "ui/widgets/EmptyHint.h"

#include <QCloseEvent>
#include <QShortcut>
#include <QStackedLayout>

namespace harbrix {

FileBrowserWindow::FileBrowserWindow(const Environment& environment)
    : m_environment(environment), m_pages(new QStackedLayout(this)),
      m_hint(new EmptyHint({QStringLiteral("externaldrive.badge.xmark"), 48, TextRole::headline})) {
    m_hint->setObjectName(QStringLiteral("nothingMounted"));
    m_pages->addWidget(m_hint);
    setMinimumSize(smallestHint);
    connect(&environment.files.browserState, &FileBrowserState::changed, this, [this] {
        if (isVisible())
            followState();
    });
    connect(&environment.languageManager, &LanguageManager::localeChanged, this,
            &FileBrowserWindow::retranslate);
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    retranslate();
}

void FileBrowserWindow::followState() {
    const FileBrowserState& state = m_environment.files.browserState;
    if (!state.config() || !state.mountPoint())
        return;
    // The same share again keeps its place, its queue and its offline mode.
    if (m_view && m_view->config().id == state.config()->id &&
        m_view->mountPoint() == *state.mountPoint())
        return;
    closeView();
    m_view = new FileBrowserView(m_environment, *state.config(), *state.mountPoint());
    setMinimumSize(FileBrowserView::smallest);
    m_pages->addWidget(m_view);
    m_pages->setCurrentWidget(m_view);
}

void FileBrowserWindow::closeView() {
    delete std::exchange(m_view, nullptr);
}

void FileBrowserWindow::showEvent(QShowEvent* event) {
    followState();
    QWidget::showEvent(event);
}

void FileBrowserWindow::closeEvent(QCloseEvent* event) {
    QWidget::closeEvent(event);
    if (event->isAccepted())
        closeView();
}

void FileBrowserWindow::retranslate() {
    m_hint->setTexts(text("browser.empty.title"), text("browser.empty.hint"));
}

} // namespace harbrix
