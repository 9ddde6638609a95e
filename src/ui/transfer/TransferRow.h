#pragma once

#include "transfer/TransferTask.h"
#include "ui/widgets/Theme.h"

#include <QWidget>

#include <functional>

class QToolButton;

namespace harbrix {

/// One transfer of the queue: its direction, name, progress, status, and what can be done with it.
class TransferRow : public QWidget {
    Q_OBJECT

public:
    struct Actions {
        std::function<void()> onCancel;
        std::function<void()> onPause;
        std::function<void()> onResume;
        std::function<void()> onRetry;
    };

    TransferRow(Actions actions, QWidget* parent);

    /// `now` is what speed and remaining time are counted to.
    void setTask(const TransferTask& task, const QDateTime& now, const QLocale& locale);
    [[nodiscard]] const TransferTask& task() const { return m_task; }
    /// The line beneath the progress bar.
    [[nodiscard]] const QString& details() const { return m_details; }
    [[nodiscard]] const QString& status() const { return m_status; }

    [[nodiscard]] static int heightFor(const TransferTask& task);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Places;
    [[nodiscard]] Places places() const;
    void showButtons();
    void perform(TransferAction action) const;

    TransferTask m_task;
    QString m_name;
    QString m_details;
    QString m_status;
    Actions m_actions;
    std::optional<TransferStatus> m_buttonsAreFor;
    QToolButton* m_first;
    QToolButton* m_second;
};

/// The colour of the direction symbol.
[[nodiscard]] Tint tintOf(TransferStatus status);

} // namespace harbrix
