#pragma once

#include "automation/NetworkBinding.h"
#include "core/MountState.h"

#include <QAbstractListModel>
#include <QUuid>

#include <optional>
#include <vector>

namespace harbrix {

struct Environment;

/// What one row of the list shows.
struct ShareRow {
    QUuid id;
    QString name;
    QString address;
    MountState state;
    std::optional<QUrl> mountPoint;            ///< while mounted
    std::optional<NetworkMatchResult> network; ///< of an enabled record
    bool isEdited = false;                     ///< its form holds what is not saved
};

/// The records with what is known of them, in list order. Rows are worked out when they are asked
/// for, so that a change costs as much as the rows that are on screen.
class ShareListModel : public QAbstractListModel {
    Q_OBJECT

public:
    explicit ShareListModel(const Environment& environment, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    /// Display and accessible text; row() has the rest.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

    [[nodiscard]] ShareRow row(int index) const;
    [[nodiscard]] QModelIndex indexOf(const QUuid& id) const;

private:
    void followRecords();
    void refreshAll();

    const Environment& m_environment;
    std::vector<QUuid> m_ids;
};

/// All that a row says, as a screen reader speaks it.
[[nodiscard]] QString spokenText(const ShareRow& row);

} // namespace harbrix
