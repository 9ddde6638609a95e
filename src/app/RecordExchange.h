#pragma once

#include "app/ShareRequests.h"
#include "base/Task.h"

#include <QByteArray>
#include <QJsonObject>

namespace harbrix {

class KeychainManager;
class NASConfigStore;

/// What an import comes to: records are the same by their id.
struct ImportPlan {
    std::vector<NASConfig> added;   ///< unknown ids
    std::vector<NASConfig> updated; ///< known ids with something else in the record or a password
    std::vector<NASConfig> skipped; ///< as they are already

    bool operator==(const ImportPlan&) const = default;
};

/// The records of a JSON text of the form that they are stored in: an array of them. One that is
/// damaged, or an id that comes twice, refuses them all.
[[nodiscard]] std::expected<std::vector<NASConfig>, Refusal> parseRecords(const QByteArray& json);
/// Sorts what was read by what is there. A record without an account for its password gets one.
[[nodiscard]] ImportPlan planImport(std::vector<NASConfig> read,
                                    const std::vector<NASConfig>& present);
/// {"added": [...], "updated": [...], "skipped": [...]} with "id" and "name" of each.
[[nodiscard]] QJsonObject describe(const ImportPlan& plan);

/// Takes the list of shares out of the program and into it. Main thread.
class RecordExchange {
public:
    enum class Passwords { LeftOut, Included };
    enum class Run { Real, Dry };

    RecordExchange(NASConfigStore& store, KeychainManager& keychain)
        : m_store(store), m_keychain(keychain) {}

    /// A JSON array of the records as they are stored; with passwords, those of the secret store
    /// stand in them.
    [[nodiscard]] Task<QByteArray> exported(Passwords passwords);
    /// Adds and updates, but mounts nothing. Passwords go into the secret store alone; a record
    /// that brings none leaves the stored one. The answer is describe()'s, with the names of shares
    /// whose password the store did not take as "passwordsNotStored".
    [[nodiscard]] Task<std::expected<QJsonObject, Refusal>> imported(QByteArray json, Run run);

private:
    [[nodiscard]] Task<bool> storePassword(NASConfig config);

    NASConfigStore& m_store;
    KeychainManager& m_keychain;
};

} // namespace harbrix
