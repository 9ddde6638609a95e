#pragma once

#include "mount_smbfs/SmbLogin.h"

struct _SMBCCTX;

namespace harbrix {

/// What a context of the library knows of its connection: the user data of each of our contexts.
class SmbContextData {
public:
    explicit SmbContextData(const SmbLogin& login) : m_login(login) {}

    /// Becomes the user data of a new context.
    void attach(_SMBCCTX* context);
    [[nodiscard]] const SmbLogin& login() const { return m_login; }

    /// Whether the context was given the login already, and needs no more of it.
    [[nodiscard]] bool hasCredentials() const { return m_hasCredentials; }
    void noteCredentials() { m_hasCredentials = true; }

private:
    const SmbLogin& m_login;
    bool m_hasCredentials = false;
};

/// Readies libsmbclient for this process: no configuration file of the user or the machine matters,
/// nothing is logged. Call it once, before any thread and any connection.
///
/// Returns whether several threads may be inside the library at once. Debian's build exports only
/// the lower half of its thread interface; where neither half is found there can be one connection
/// only.
[[nodiscard]] bool prepareSmbLibrary();

/// Loads our own settings into the library. Call it with the first context at hand.
void applySmbSettings(_SMBCCTX* context);

} // namespace harbrix
