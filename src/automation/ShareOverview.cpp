#include "automation/ShareOverview.h"

#include <algorithm>

namespace harbrix {

std::vector<MountedShare> mountedShares(const std::vector<NASConfig>& configs,
                                        const NASStatuses& statuses) {
    std::vector<MountedShare> shares;
    for (const NASConfig& config : configs) {
        const auto status = statuses.constFind(config.id);
        if (status != statuses.cend() && status->mountPoint &&
            status->mountState.kind() == MountState::Kind::mounted)
            shares.push_back({config.id, config.name, config.address, *status->mountPoint});
    }
    return shares;
}

DetailContent detailContent(const std::optional<QUuid>& selected,
                            const std::vector<NASConfig>& configs, const NASStatuses& statuses) {
    const bool exists = selected && std::ranges::any_of(configs, [&](const NASConfig& config) {
                            return config.id == *selected;
                        });
    if (exists)
        return DetailContent::form;
    return mountedShares(configs, statuses).empty() ? DetailContent::hint
                                                    : DetailContent::mountedFolders;
}

MountControl mountControl(const std::optional<NASStatus>& status) {
    switch (status ? status->mountState.kind() : MountState::Kind::idle) {
    case MountState::Kind::mounting:
    case MountState::Kind::unmounting:
        return MountControl::busy;
    case MountState::Kind::mounted:
        return MountControl::openOrUnmount;
    case MountState::Kind::idle:
    case MountState::Kind::failed:
    case MountState::Kind::offline:
        break;
    }
    return MountControl::mount;
}

std::optional<HarbrixError> currentError(const std::optional<NASStatus>& status) {
    if (!status || status->mountState.kind() != MountState::Kind::failed)
        return std::nullopt;
    return status->lastError;
}

bool usesAddressRange(NetworkBindingStrategy strategy) {
    return strategy != NetworkBindingStrategy::ssid;
}

bool usesNetworkNames(NetworkBindingStrategy strategy) {
    return strategy != NetworkBindingStrategy::ipRange;
}

QStringList withNetworkName(QStringList names, const QString& name) {
    const QString trimmed = name.trimmed();
    if (!trimmed.isEmpty() && !names.contains(trimmed))
        names << trimmed;
    return names;
}

} // namespace harbrix
