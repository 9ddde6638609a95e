#include "ui/widgets/StatusIndicator.h"

#include "services/MountStateText.h"
#include "ui/widgets/Theme.h"

#include <QPainter>

namespace harbrix {
namespace {

constexpr double fullBreathScale = 1.3;
constexpr double fullBreathOpacity = 0.7;
constexpr double outlineWidth = 1.5;

Tint tintOf(MountState::Kind kind) {
    switch (kind) {
    case MountState::Kind::mounting:
    case MountState::Kind::mounted:
        return Tint::green;
    case MountState::Kind::unmounting:
        return Tint::yellow;
    case MountState::Kind::failed:
        return Tint::red;
    case MountState::Kind::idle:
    case MountState::Kind::offline:
        break;
    }
    return Tint::gray;
}

} // namespace

QString StatusIndicator::accessibilityLabel() const {
    return harbrix::accessibilityLabel(state);
}

void StatusIndicator::paint(QPainter& painter, const QPointF& center, const QPalette& palette,
                            double phase) const {
    const double breath = isPulsing() ? phase : 0;
    const double radius = size / 2 * (1 + (fullBreathScale - 1) * breath);
    const QColor ink = color(tintOf(state.kind()), palette);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(1 - (1 - fullBreathOpacity) * breath);
    if (state.kind() == MountState::Kind::offline) {
        painter.setPen(QPen(ink, outlineWidth));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(center, radius - outlineWidth / 2, radius - outlineWidth / 2);
    } else {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
        painter.drawEllipse(center, radius, radius);
    }
    painter.restore();
}

} // namespace harbrix
