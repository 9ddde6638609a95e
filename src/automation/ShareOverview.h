#pragma once

#include "config/NASConfig.h"
#include "core/AppState.h"

#include <QUrl>

#include <optional>
#include <vector>

namespace harbrix {

/// A share that can be opened now.
struct MountedShare {
    QUuid id;
    QString name;
    QString address;
    QUrl mountPoint;

    bool operator==(const MountedShare&) const = default;
};

/// The records that are mounted and have a mount point, in list order.
[[nodiscard]] std::vector<MountedShare> mountedShares(const std::vector<NASConfig>& configs,
                                                      const NASStatuses& statuses);

/// What stands beside the list of shares.
enum class DetailContent { form, mountedFolders, hint };
/// A selection whose record is gone counts as none.
[[nodiscard]] DetailContent detailContent(const std::optional<QUuid>& selected,
                                          const std::vector<NASConfig>& configs,
                                          const NASStatuses& statuses);

/// What the user can do about the mount of a share.
enum class MountControl { mount, busy, openOrUnmount };
[[nodiscard]] MountControl mountControl(const std::optional<NASStatus>& status);

/// The error to tell beside a share: its last one, as long as it is still failed.
[[nodiscard]] std::optional<HarbrixError> currentError(const std::optional<NASStatus>& status);

/// Whether the strategy looks at the address range, and at the list of Wi-Fi names.
[[nodiscard]] bool usesAddressRange(NetworkBindingStrategy strategy);
[[nodiscard]] bool usesNetworkNames(NetworkBindingStrategy strategy);

/// The list with the name at its end, trimmed of white space and line ends; unchanged where the
/// name is empty or in the list already.
[[nodiscard]] QStringList withNetworkName(QStringList names, const QString& name);

} // namespace harbrix
