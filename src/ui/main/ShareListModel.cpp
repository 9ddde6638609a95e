#include "ui/main/ShareListModel.h"

#include "automation/NetworkMonitor.h"
#include "config/NASConfigStore.h"
#include "core/AppStateManager.h"
#include "services/LanguageManager.h"
#include "services/MountStateText.h"
#include "services/Text.h"
#include "ui/Environment.h"
#include "ui/form/FormDrafts.h"
#include "ui/main/MountPath.h"

#include <algorithm>

namespace harbrix {
namespace {

std::vector<QUuid> idsOf(const std::vector<NASConfig>& configs) {
    std::vector<QUuid> ids;
    ids.reserve(configs.size());
    std::ranges::transform(configs, std::back_inserter(ids), &NASConfig::id);
    return ids;
}

} // namespace

ShareListModel::ShareListModel(const Environment& environment, QObject* parent)
    : QAbstractListModel(parent), m_environment(environment),
      m_ids(idsOf(environment.configStore.configs())) {
    connect(&environment.configStore, &NASConfigStore::changed, this,
            &ShareListModel::followRecords);
    connect(&environment.appState, &AppStateManager::statusChanged, this, [this](const QUuid& id) {
        if (const QModelIndex index = indexOf(id); index.isValid())
            emit dataChanged(index, index);
    });
    connect(&environment.drafts, &FormDrafts::changed, this, [this](const QUuid& id) {
        if (const QModelIndex index = indexOf(id); index.isValid())
            emit dataChanged(index, index);
    });
    connect(&environment.network, &NetworkMonitor::currentIPAddressAssigned, this,
            &ShareListModel::refreshAll);
    connect(&environment.network, &NetworkMonitor::currentSSIDAssigned, this,
            &ShareListModel::refreshAll);
    connect(&environment.languageManager, &LanguageManager::localeChanged, this,
            &ShareListModel::refreshAll);
}

int ShareListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_ids.size());
}

QVariant ShareListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return row(index.row()).name;
    case Qt::AccessibleTextRole:
        return spokenText(row(index.row()));
    case Qt::ToolTipRole: {
        const ShareRow shown = row(index.row());
        return QString(shown.name + QLatin1String("  —  ") + statusText(shown.state));
    }
    default:
        return {};
    }
}

ShareRow ShareListModel::row(int index) const {
    const NASConfig& config =
        m_environment.configStore.configs().at(static_cast<std::size_t>(index));
    ShareRow row{
        config.id, config.name, config.address, {}, {}, {}, m_environment.drafts.has(config.id)};
    if (const auto status = m_environment.appState.status(config.id)) {
        row.state = status->mountState;
        if (row.state.kind() == MountState::Kind::mounted)
            row.mountPoint = status->mountPoint;
    }
    if (config.isEnabled)
        row.network = m_environment.network.evaluateBinding(config);
    return row;
}

QModelIndex ShareListModel::indexOf(const QUuid& id) const {
    const auto found = std::ranges::find(m_ids, id);
    return found == m_ids.end() ? QModelIndex() : index(int(found - m_ids.begin()));
}

// The store tells only that it has changed. One record more or less is the usual case, and keeps
// the view where it is scrolled to.
void ShareListModel::followRecords() {
    std::vector<QUuid> ids = idsOf(m_environment.configStore.configs());
    const auto difference = std::ranges::mismatch(ids, m_ids);
    const int first = int(difference.in1 - ids.begin());
    if (ids == m_ids)
        return refreshAll();
    if (ids.size() == m_ids.size() + 1 &&
        std::equal(difference.in1 + 1, ids.end(), difference.in2, m_ids.end())) {
        beginInsertRows({}, first, first);
        m_ids = std::move(ids);
        endInsertRows();
    } else if (ids.size() + 1 == m_ids.size() &&
               std::equal(difference.in1, ids.end(), difference.in2 + 1, m_ids.end())) {
        beginRemoveRows({}, first, first);
        m_ids = std::move(ids);
        endRemoveRows();
    } else {
        beginResetModel();
        m_ids = std::move(ids);
        endResetModel();
    }
}

void ShareListModel::refreshAll() {
    if (!m_ids.empty())
        emit dataChanged(index(0), index(rowCount() - 1));
}

QString spokenText(const ShareRow& row) {
    QStringList parts{row.name, statusText(row.state),
                      row.mountPoint ? shownPath(*row.mountPoint) : row.address};
    if (row.network)
        parts << text(statusTextKey(*row.network));
    if (row.isEdited)
        parts << text("main.edited");
    parts.removeAll(QString());
    return parts.join(QLatin1String(", "));
}

} // namespace harbrix
