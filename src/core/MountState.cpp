#include "core/MountState.h"

namespace harbrix {

MountState MountState::failed(HarbrixError error) {
    MountState state;
    state.m_kind = Kind::failed;
    state.m_error = std::move(error);
    return state;
}

QString MountState::name() const {
    switch (m_kind) {
    case Kind::idle:
        return QStringLiteral("idle");
    case Kind::mounting:
        return QStringLiteral("mounting");
    case Kind::mounted:
        return QStringLiteral("mounted");
    case Kind::unmounting:
        return QStringLiteral("unmounting");
    case Kind::failed:
        return QStringLiteral("failed");
    case Kind::offline:
        return QStringLiteral("offline");
    }
    Q_UNREACHABLE();
}

} // namespace harbrix
