#pragma once

#include "core/HarbrixError.h"

#include <QDateTime>
#include <QUrl>
#include <QUuid>

#include <optional>

namespace harbrix {

/// The state of one share.
class MountState {
public:
    enum class Kind {
        idle,     ///< not mounted, nothing under way
        mounting, ///< a mount attempt is running
        mounted,
        unmounting, ///< reserved: drawn and counted everywhere, but set by no operation
        failed,     ///< the last attempt failed; carries the error
        offline     ///< the network binding does not match at present
    };

    MountState() = default;
    /// Any state but failed, which needs its error.
    MountState(Kind kind) : m_kind(kind) { Q_ASSERT(kind != Kind::failed); }
    [[nodiscard]] static MountState failed(HarbrixError error);

    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] const std::optional<HarbrixError>& error() const { return m_error; }
    /// The state as it is named, for tools that read it: "mounted".
    [[nodiscard]] QString name() const;

    bool operator==(const MountState&) const = default;

private:
    Kind m_kind = Kind::idle;
    std::optional<HarbrixError> m_error;
};

/// What is known of one share at this moment. Nothing of it is persisted.
struct NASStatus {
    QUuid configID;
    MountState mountState;
    std::optional<QUrl> mountPoint;        ///< set only while mounted
    std::optional<HarbrixError> lastError; ///< kept when a later mount succeeds
    std::optional<QDateTime> lastMountedAt;

    bool operator==(const NASStatus&) const = default;
};

} // namespace harbrix
