#include "ui/transfer/TransferList.h"

#include "base/Scheduler.h"
#include "services/LanguageManager.h"
#include "transfer/TransferManager.h"

#include <QScrollBar>

namespace harbrix {
namespace {

/// Not at once: it may be one of its own buttons that has made it go.
void discard(TransferRow* row) {
    row->hide();
    row->setObjectName({});
    row->deleteLater();
}

} // namespace

TransferList::TransferList(TransferManager& manager, const Environment& environment,
                           QWidget* parent)
    : QAbstractScrollArea(parent), m_manager(manager), m_environment(environment) {
    setObjectName(QStringLiteral("transferList"));
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    verticalScrollBar()->setSingleStep(TransferRow::heightFor({}) / 2);
}

void TransferList::showTasks() {
    int height = 0;
    for (const TransferTask& task : m_manager.tasks())
        height += TransferRow::heightFor(task);
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
    placeRows();
}

void TransferList::placeRows() {
    const QDateTime now = m_environment.files.scheduler.wallClock();
    const QLocale& locale = m_environment.languageManager.locale();
    const int width = viewport()->width();
    QHash<QUuid, TransferRow*> former = std::exchange(m_rows, {});
    int top = -verticalScrollBar()->value();
    for (const TransferTask& task : m_manager.tasks()) {
        const int height = TransferRow::heightFor(task);
        if (top + height > 0 && top < viewport()->height()) {
            TransferRow* row = former.take(task.id);
            if (!row)
                row = makeRow(task.id);
            row->setGeometry(0, top, width, height);
            if (row->task() != task || task.status == TransferStatus::running)
                row->setTask(task, now, locale);
            row->show();
            m_rows.insert(task.id, row);
        }
        top += height;
    }
    for (TransferRow* row : former)
        discard(row);
}

void TransferList::forgetRows() {
    for (TransferRow* row : std::exchange(m_rows, {}))
        discard(row);
}

TransferRow* TransferList::makeRow(const QUuid& id) {
    TransferManager& manager = m_manager;
    return new TransferRow(
        {[&manager, id] { manager.cancel(id); }, [&manager, id] { manager.pause(id); },
         [&manager, id] { manager.resume(id); }, [&manager, id] { manager.retry(id); }},
        viewport());
}

void TransferList::resizeEvent(QResizeEvent*) {
    showTasks();
}

void TransferList::scrollContentsBy(int, int) {
    placeRows();
}

} // namespace harbrix
