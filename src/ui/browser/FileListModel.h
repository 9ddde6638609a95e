#pragma once

#include "base/TimeText.h"
#include "files/FileItem.h"
#include "files/FileSystemManager.h"

#include <QAbstractTableModel>

#include <optional>

namespace harbrix {

/// The rows of the file table, in the order of the listing.
class FileListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using Items = FileSystemManager::Items;
    enum Column { Name, Size, Modified, columnsInAll };

    explicit FileListModel(const Scheduler& clock, QObject* parent = nullptr);

    /// A listing that changes no row leaves all of them where they are.
    void setItems(const Items& items, ListingChange change);
    void setLocale(const QLocale& locale);

    [[nodiscard]] const FileItem& item(int row) const {
        return (*m_items)[static_cast<std::size_t>(row)];
    }
    [[nodiscard]] const FileItem* find(const QUuid& id) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    [[nodiscard]] QString cellText(int row, int column) const;

private:
    const Scheduler& m_clock;
    Items m_items;
    QLocale m_locale;
    std::optional<RelativeDateText> m_dates;
};

} // namespace harbrix
