#pragma once

#include "core/MountState.h"

#include <QString>

class QPainter;
class QPalette;
class QPointF;

namespace harbrix {

/// The dot that stands beside a share. It is drawn onto rows, which come in hundreds, and is
/// therefore a value rather than a widget; its owner's Pulse makes it breathe.
struct StatusIndicator {
    MountState state;
    double size = 8; ///< diameter, device-independent pixels

    [[nodiscard]] bool isPulsing() const { return state.kind() == MountState::Kind::mounting; }
    /// What the dot says, for a screen reader.
    [[nodiscard]] QString accessibilityLabel() const;
    /// `phase` as Pulse gives it; of no effect unless the state pulses.
    void paint(QPainter& painter, const QPointF& center, const QPalette& palette,
               double phase) const;
};

} // namespace harbrix
