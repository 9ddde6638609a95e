#pragma once

#include "base/Scheduler.h"

#include <QWidget>

#include <optional>
#include <variant>

namespace harbrix {

class Spinner;
class SymbolView;
class TextLabel;

struct TestConnectionResult {
    struct Testing {};
    struct Success {
        Seconds latency;
    };
    struct Failure {
        QString text;
    };
    std::variant<Testing, Success, Failure> outcome;
};

/// How the latest test of a connection went, or that it is running.
class TestResultLine : public QWidget {
    Q_OBJECT

public:
    explicit TestResultLine(QWidget* parent = nullptr);

    void setResult(const std::optional<TestConnectionResult>& result);
    [[nodiscard]] bool hasResult() const { return m_result.has_value(); }
    void retranslate();

    [[nodiscard]] QSize sizeHint() const override;

private:
    std::optional<TestConnectionResult> m_result;
    Spinner* m_spinner;
    SymbolView* m_symbol;
    TextLabel* m_text;
};

} // namespace harbrix
