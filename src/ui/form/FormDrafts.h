#pragma once

#include "config/NASConfig.h"

#include <QObject>

#include <map>
#include <optional>

namespace harbrix {

class NASConfigStore;

/// What was typed into the forms of shares and is not saved, one draft a record: it outlives the
/// form and its window, and goes when it is saved, discarded, or the record goes. In memory only.
/// Main thread.
class FormDrafts : public QObject {
    Q_OBJECT

public:
    explicit FormDrafts(NASConfigStore& store);

    [[nodiscard]] std::optional<NASConfigDraft> draft(const QUuid& id) const;
    [[nodiscard]] bool has(const QUuid& id) const { return m_drafts.contains(id); }
    void keep(const QUuid& id, const NASConfigDraft& draft);
    void drop(const QUuid& id);

signals:
    /// A draft was kept that was not there before, or dropped.
    void changed(const QUuid& id);

private:
    NASConfigStore& m_store;
    std::map<QUuid, NASConfigDraft> m_drafts;
};

} // namespace harbrix
