#include "ui/browser/FileBrowserWindow.h"

#include "files/FileBrowserState.h"
#include "services/LanguageManager.h"
#include "services/Text.h"
#include "ui/browser/FileBrowserView.h"
#include "ui/widgets/EmptyHint.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMessageBox>
#include <QPushButton>
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
    qApp->installEventFilter(this);
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
    if (m_view && m_view->transferManager().hasUnfinished() && !m_isQuitting) {
        event->ignore();
        askToStopTransfers();
        return;
    }
    QWidget::closeEvent(event);
    if (event->isAccepted())
        closeView();
}

// To quit, Qt closes all windows and stays if one of them refuses.
bool FileBrowserWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Quit)
        m_isQuitting = true;
    return QWidget::eventFilter(watched, event);
}

void FileBrowserWindow::askToStopTransfers() {
    if (m_question) {
        m_question->raise();
        return;
    }
    m_question = new QMessageBox(QMessageBox::Question, text("transfer.stop.title"),
                                 text("transfer.stop.title"), QMessageBox::NoButton, this);
    m_question->setObjectName(QStringLiteral("stopTransfers"));
    m_question->setAttribute(Qt::WA_DeleteOnClose);
    m_question->setInformativeText(text("transfer.stop.message"));
    QPushButton* cancel = m_question->addButton(text("common.cancel"), QMessageBox::RejectRole);
    cancel->setObjectName(QStringLiteral("goOnWithTransfers"));
    QPushButton* stop =
        m_question->addButton(text("transfer.stop.confirm"), QMessageBox::DestructiveRole);
    stop->setObjectName(QStringLiteral("confirmStop"));
    m_question->setDefaultButton(cancel);
    m_question->setEscapeButton(cancel);
    connect(stop, &QPushButton::clicked, this, [this] {
        closeView();
        close();
    });
    m_question->open();
}

void FileBrowserWindow::retranslate() {
    m_hint->setTexts(text("browser.empty.title"), text("browser.empty.hint"));
}

} // namespace harbrix
