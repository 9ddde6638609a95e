#include "ui/form/TestResultLine.h"

#include "services/Text.h"
#include "ui/widgets/Spinner.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/TextLabel.h"

#include <QHBoxLayout>

namespace harbrix {
namespace {

constexpr int symbolSize = 16;
constexpr int widestOnOneLine = 260;

QString message(const TestConnectionResult& result) {
    if (const auto* success = std::get_if<TestConnectionResult::Success>(&result.outcome))
        return formatted("nas.connectionSuccess",
                         {QString::number(success->latency.count() * 1000, 'f', 0)});
    if (const auto* failure = std::get_if<TestConnectionResult::Failure>(&result.outcome))
        return formatted("nas.connectionFailed", {failure->text});
    return text("nas.testingConnection");
}

} // namespace

TestResultLine::TestResultLine(QWidget* parent)
    : QWidget(parent), m_spinner(new Spinner),
      m_symbol(new SymbolView(QStringLiteral("checkmark.circle.fill"), symbolSize, Tint::green)),
      m_text(new TextLabel(TextRole::callout, Tint::secondary)) {
    setObjectName(QStringLiteral("testResult"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing::small - spacing::hair);
    row->addWidget(m_spinner);
    row->addWidget(m_symbol);
    row->addWidget(m_text, 1);
    m_text->setObjectName(QStringLiteral("testResultText"));
    setResult(std::nullopt);
}

void TestResultLine::setResult(const std::optional<TestConnectionResult>& result) {
    m_result = result;
    if (!result) {
        m_text->clear();
        return;
    }
    const bool testing = std::holds_alternative<TestConnectionResult::Testing>(result->outcome);
    const bool failed = std::holds_alternative<TestConnectionResult::Failure>(result->outcome);
    m_spinner->setVisible(testing);
    m_symbol->setVisible(!testing);
    m_symbol->setSymbol(failed ? QStringLiteral("xmark.circle.fill")
                               : QStringLiteral("checkmark.circle.fill"),
                        failed ? Tint::red : Tint::green);
    m_text->setTint(failed ? Tint::red : Tint::secondary);
    retranslate();
}

// A label that may wrap asks for less than a short message needs to stay on one line.
QSize TestResultLine::sizeHint() const {
    const int line =
        symbolSize + layout()->spacing() + m_text->fontMetrics().horizontalAdvance(m_text->text());
    const QSize hint = QWidget::sizeHint();
    return {std::max(hint.width(), std::min(line + 1, widestOnOneLine)), hint.height()};
}

void TestResultLine::retranslate() {
    if (!m_result)
        return;
    m_text->setText(message(*m_result));
    setAccessibleName(m_text->text());
}

} // namespace harbrix
