#pragma once

#include "ui/Environment.h"
#include "ui/transfer/TransferRow.h"

#include <QAbstractScrollArea>
#include <QHash>

namespace harbrix {

class TransferManager;

/// The rows of the queue. Only those in sight exist: a drop may bring thousands of files.
class TransferList : public QAbstractScrollArea {
    Q_OBJECT

public:
    TransferList(TransferManager& manager, const Environment& environment,
                 QWidget* parent = nullptr);

    /// Shows the tasks as they are now.
    void showTasks();
    /// Makes all rows anew at the next showing, in the language that is then in force.
    void forgetRows();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void placeRows();
    [[nodiscard]] TransferRow* makeRow(const QUuid& id);

    TransferManager& m_manager;
    Environment m_environment;
    QHash<QUuid, TransferRow*> m_rows;
};

} // namespace harbrix
