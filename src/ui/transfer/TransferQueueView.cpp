#include "ui/transfer/TransferQueueView.h"

#include "services/LanguageManager.h"
#include "services/Text.h"
#include "transfer/TransferManager.h"
#include "ui/transfer/TransferList.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/TextLabel.h"

#include <QHBoxLayout>
#include <QStackedWidget>
#include <QToolButton>

#include <algorithm>

namespace harbrix {
namespace {

constexpr int smallestEmptyArea = 80;
// A fast copy tells of itself a thousand times a second, which nobody could see.
constexpr int redrawMilliseconds = 30;

QToolButton* makePlainButton(const char* name, const char* symbol) {
    auto* button = new QToolButton;
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoRaise(true);
    button->setIcon(symbolIcon(QString::fromLatin1(symbol), Tint::secondary));
    button->setIconSize({14, 14});
    button->setFixedSize(28, 28);
    return button;
}

} // namespace

TransferQueueView::TransferQueueView(TransferManager& manager, const Environment& environment,
                                     QWidget* parent)
    : QWidget(parent), m_manager(manager), m_languageManager(environment.languageManager),
      m_body(new QStackedWidget), m_nothing(new TextLabel(TextRole::body, Tint::secondary)),
      m_list(new TransferList(manager, environment)) {
    setObjectName(QStringLiteral("transferQueue"));
    m_nothing->setObjectName(QStringLiteral("noTransfers"));
    m_nothing->setAlignment(Qt::AlignCenter);
    m_nothing->setMinimumHeight(smallestEmptyArea);
    m_body->addWidget(m_nothing);
    m_body->addWidget(m_list);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(buildHeader());
    column->addWidget(m_body);

    m_redraw.setSingleShot(true);
    m_redraw.setInterval(redrawMilliseconds);
    connect(&m_redraw, &QTimer::timeout, this, &TransferQueueView::showTasks);
    connect(&manager, &TransferManager::changed, this, [this] {
        if (!m_redraw.isActive())
            m_redraw.start();
    });
    connect(&environment.languageManager, &LanguageManager::localeChanged, this,
            &TransferQueueView::retranslate);
    setExpanded(true);
    retranslate();
}

QWidget* TransferQueueView::buildHeader() {
    m_title = new TextLabel(TextRole::headline, Tint::primary, TextLabel::Lines::One);
    m_active = new TextLabel(TextRole::caption, Tint::secondary, TextLabel::Lines::One);
    m_active->setObjectName(QStringLiteral("activeTransfers"));
    m_clear = makePlainButton("clearCompleted", "trash");
    connect(m_clear, &QToolButton::clicked, this, [this] { m_manager.clearCompleted(); });
    m_fold = makePlainButton("foldTransfers", "chevron.down");
    connect(m_fold, &QToolButton::clicked, this, [this] { setExpanded(!m_isExpanded); });

    auto* header = new QWidget;
    header->setFixedHeight(foldedHeight);
    auto* row = new QHBoxLayout(header);
    row->setContentsMargins(spacing::medium, 0, spacing::small, 0);
    row->setSpacing(spacing::small);
    row->addWidget(new SymbolView(QStringLiteral("arrow.up.arrow.down"), 16, Tint::secondary));
    row->addWidget(m_title);
    row->addWidget(m_active);
    row->addStretch();
    row->addWidget(m_clear);
    row->addWidget(m_fold);
    return header;
}

void TransferQueueView::setExpanded(bool isExpanded) {
    m_isExpanded = isExpanded;
    m_body->setVisible(isExpanded);
    m_fold->setIcon(
        symbolIcon(isExpanded ? QStringLiteral("chevron.down") : QStringLiteral("chevron.right"),
                   Tint::secondary));
    if (isExpanded) {
        setMinimumHeight(smallestHeight);
        setMaximumHeight(largestHeight);
    } else {
        setFixedHeight(foldedHeight);
    }
}

void TransferQueueView::showTasks() {
    const auto& tasks = m_manager.tasks();
    const auto active = std::ranges::count_if(tasks, isActive);
    m_active->setVisible(active > 0);
    m_active->setText(
        formatted("transfer.activeCount", static_cast<int>(active), m_languageManager.locale()));
    m_clear->setVisible(std::ranges::any_of(tasks, isFinished));
    if (tasks.empty())
        m_body->setCurrentWidget(m_nothing);
    else
        m_body->setCurrentWidget(m_list);
    m_list->showTasks();
}

void TransferQueueView::retranslate() {
    m_title->setText(text("transfer.title"));
    m_clear->setToolTip(text("transfer.clearCompleted"));
    m_clear->setAccessibleName(text("transfer.clearCompleted"));
    m_fold->setAccessibleName(text("transfer.title"));
    m_nothing->setText(text("transfer.noTransfers"));
    m_list->forgetRows();
    showTasks();
}

} // namespace harbrix
