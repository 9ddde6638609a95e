#include "ui/form/FormDrafts.h"

#include "config/NASConfigStore.h"

namespace harbrix {

FormDrafts::FormDrafts(NASConfigStore& store) : m_store(store) {
    connect(&store, &NASConfigStore::changed, this, [this] {
        std::erase_if(m_drafts, [this](const auto& entry) { return !m_store.config(entry.first); });
    });
}

std::optional<NASConfigDraft> FormDrafts::draft(const QUuid& id) const {
    const auto found = m_drafts.find(id);
    return found == m_drafts.end() ? std::nullopt : std::optional(found->second);
}

void FormDrafts::keep(const QUuid& id, const NASConfigDraft& draft) {
    if (m_drafts.insert_or_assign(id, draft).second)
        emit changed(id);
}

void FormDrafts::drop(const QUuid& id) {
    if (m_drafts.erase(id) > 0)
        emit changed(id);
}

} // namespace harbrix
