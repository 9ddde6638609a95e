#include "services/MountStateText.h"

#include "services/Text.h"

namespace harbrix {

QString statusText(const MountState& state) {
    switch (state.kind()) {
    case MountState::Kind::idle:
        return text("status.idle");
    case MountState::Kind::mounting:
        return text("status.mounting");
    case MountState::Kind::mounted:
        return text("status.mounted");
    case MountState::Kind::unmounting:
        return text("status.unmounting");
    case MountState::Kind::failed:
        return text("status.failed") + QStringLiteral(": ") + state.error()->errorDescription();
    case MountState::Kind::offline:
        return text("status.offline");
    }
    Q_UNREACHABLE();
}

QString accessibilityLabel(const MountState& state) {
    switch (state.kind()) {
    case MountState::Kind::mounting:
        // The key is shared with statusText(); the dots of its default text would be read aloud.
        return text("status.mounting", QStringLiteral("挂载中"));
    case MountState::Kind::unmounting:
        return text("status.unmounting.a11y");
    case MountState::Kind::failed:
        return text("status.failed.a11y");
    case MountState::Kind::idle:
    case MountState::Kind::mounted:
    case MountState::Kind::offline:
        return statusText(state);
    }
    Q_UNREACHABLE();
}

} // namespace harbrix
