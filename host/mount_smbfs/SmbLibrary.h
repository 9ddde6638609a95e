#pragma once

namespace harbrix {

/// Readies libsmbclient for this process: no configuration file of the user or the machine matters,
/// nothing is logged. Call it once, before any thread and any connection.
///
/// Returns whether several threads may be inside the library at once. Debian's build exports only
/// the lower half of its thread interface; where neither half is found there can be one connection
/// only.
[[nodiscard]] bool prepareSmbLibrary();

/// Loads our own settings into the library. Call it with the first context at hand.
void applySmbSettings(struct _SMBCCTX* context);

} // namespace harbrix
