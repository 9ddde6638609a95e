#include "ui/form/ActionBar.h"

#include "services/Text.h"
#include "ui/widgets/FlatStyle.h"
#include "ui/widgets/FlowLayout.h"
#include "ui/widgets/Spinner.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/TextLabel.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>

namespace harbrix {
namespace {

QPushButton* makeButton(const char* objectName) {
    auto* button = new QPushButton;
    button->setObjectName(QString::fromLatin1(objectName));
    return button;
}

/// A new text takes the shortcut of a button away, so they are set together.
void label(QPushButton& button, const QString& text, const QKeySequence& shortcut) {
    button.setText(text);
    button.setShortcut(shortcut);
    button.setToolTip(text + QLatin1String("  ") + shortcut.toString(QKeySequence::NativeText));
}

} // namespace

ActionBar::ActionBar(QWidget* parent)
    : QWidget(parent), m_test(makeButton("testConnection")), m_result(new TestResultLine),
      m_busy(new QWidget), m_busyText(new TextLabel(TextRole::callout, Tint::secondary)),
      m_open(makeButton("openInFinder")), m_unmount(makeButton("unmount")),
      m_mount(makeButton("mount")), m_close(makeButton("close")), m_save(makeButton("save")) {
    setObjectName(QStringLiteral("actions"));
    m_open->setIcon(symbolIcon(QStringLiteral("arrow.up.forward.app")));
    FlatStyle::setProminent(*m_save);

    m_busy->setObjectName(QStringLiteral("mounting"));
    m_busyText->setWordWrap(false);
    auto* busy = new QHBoxLayout(m_busy);
    busy->setContentsMargins(0, 0, spacing::tight, 0);
    busy->setSpacing(spacing::small - spacing::hair);
    busy->addWidget(new Spinner);
    busy->addWidget(m_busyText);

    auto* flow = new FlowLayout(spacing::small, this);
    flow->setContentsMargins(spacing::regular, spacing::medium, spacing::regular, spacing::medium);
    flow->addWidget(m_test);
    flow->addWidget(m_result);
    flow->beginTrailingGroup();
    for (QWidget* widget :
         std::initializer_list<QWidget*>{m_busy, m_open, m_unmount, m_mount, m_close, m_save})
        flow->addWidget(widget);

    connect(m_test, &QPushButton::clicked, this, &ActionBar::testRequested);
    connect(m_open, &QPushButton::clicked, this, &ActionBar::openRequested);
    connect(m_unmount, &QPushButton::clicked, this, &ActionBar::unmountRequested);
    connect(m_mount, &QPushButton::clicked, this, &ActionBar::mountRequested);
    connect(m_close, &QPushButton::clicked, this, &ActionBar::closeRequested);
    connect(m_save, &QPushButton::clicked, this, &ActionBar::saveRequested);
}

void ActionBar::retranslate() {
    label(*m_test, text("nas.testConnection"), Qt::CTRL | Qt::Key_T);
    m_result->retranslate();
    m_busyText->setText(text("nas.mounting"));
    m_busy->setAccessibleName(text("nas.mounting"));
    label(*m_open, text("nas.openInFinder"), QKeySequence::Open);
    label(*m_unmount, text("nas.unmount"), Qt::CTRL | Qt::SHIFT | Qt::Key_M);
    label(*m_mount, text("nas.mount"), Qt::CTRL | Qt::Key_M);
    m_close->setText(text("common.close"));
    label(*m_save, text("common.save"), QKeySequence::Save);
}

void ActionBar::setTestResult(const std::optional<TestConnectionResult>& result) {
    m_result->setResult(result);
    showResult();
}

void ActionBar::setResultVisible(bool visible) {
    m_resultIsVisible = visible;
    showResult();
}

void ActionBar::showResult() {
    m_result->setVisible(m_resultIsVisible && m_result->hasResult());
    updateGeometry();
}

void ActionBar::setMountControl(const std::optional<MountControl>& control) {
    m_busy->setVisible(control == MountControl::busy);
    m_open->setVisible(control == MountControl::openOrUnmount);
    m_unmount->setVisible(control == MountControl::openOrUnmount);
    m_mount->setVisible(control == MountControl::mount);
}

void ActionBar::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(QRect(0, 0, width(), 1), color(Tint::separator, palette()));
}

} // namespace harbrix
