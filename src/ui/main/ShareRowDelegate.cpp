#include "ui/main/ShareRowDelegate.h"

#include "services/MountStateText.h"
#include "services/Text.h"
#include "ui/main/MountPath.h"
#include "ui/main/ShareListModel.h"
#include "ui/widgets/Pulse.h"
#include "ui/widgets/StatusIndicator.h"
#include "ui/widgets/SymbolIcon.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

namespace harbrix {
namespace {

constexpr int dotSize = 8;
constexpr int symbolSize = 12;
constexpr int lineGap = spacing::hair;
constexpr int rowPadding = spacing::small;
constexpr int inset = spacing::small; ///< of the selection, from the edges of the list
constexpr qreal selectionRadius = 6;

/// All rows are of one height, so that hundreds of them are laid out at once.
int rowHeight() {
    return 2 * rowPadding + lineHeight(TextRole::body) +
           2 * (lineGap + lineHeight(TextRole::caption2));
}

/// The lines of a row, laid out from left to right; two or, with a badge, three.
struct RowLayout {
    QRect area;
    QRect dot;
    QRect name;
    QRect subtitle;
    QRect badge;

    RowLayout(const QRect& row, bool hasBadge) {
        area = row.adjusted(inset, 1, -inset, -1);
        const int nameHeight = lineHeight(TextRole::body);
        const int smallHeight = lineHeight(TextRole::caption2);
        int y = row.top() + rowPadding + (hasBadge ? 0 : (smallHeight + lineGap) / 2);
        dot = QRect(area.left() + spacing::small, y, dotSize, nameHeight);
        const int x = dot.right() + 1 + spacing::small;
        const int width = area.right() + 1 - spacing::small - x;
        name = QRect(x, y, width, nameHeight);
        y += nameHeight + lineGap;
        subtitle = QRect(x, y, width, smallHeight);
        y += smallHeight + lineGap;
        badge = QRect(x, y, width, smallHeight);
    }
};

/// Which states a dot alone would tell only by its colour.
bool needsWord(const MountState& state) {
    switch (state.kind()) {
    case MountState::Kind::failed:
    case MountState::Kind::mounting:
    case MountState::Kind::unmounting:
        return true;
    default:
        return false;
    }
}

Tint wordTint(const MountState& state) {
    return state.kind() == MountState::Kind::failed ? Tint::red : Tint::secondary;
}

class RowPainter {
public:
    RowPainter(QPainter& painter, const QStyleOptionViewItem& option)
        : m_painter(painter), m_option(option) {}

    void paint(const ShareRow& share, double phase) {
        const RowLayout layout(m_option.rect, share.network.has_value());
        paintSelection(layout.area);
        const QRectF dot = mirrored(layout.dot);
        StatusIndicator{share.state, dotSize}.paint(m_painter, dot.center(), m_option.palette,
                                                    phase);
        QRect name = layout.name;
        if (needsWord(share.state) || share.isEdited)
            name.setRight(name.right() - paintWord(share, layout.name));
        drawText(name, share.name, TextRole::body, Tint::primary);
        if (share.mountPoint)
            drawSymbolLine(layout.subtitle, QStringLiteral("arrow.up.forward.app"),
                           shownPath(*share.mountPoint), Tint::blue, Qt::ElideMiddle);
        else
            drawText(layout.subtitle, share.address, TextRole::caption2, Tint::secondary);
        if (share.network)
            paintBadge(layout.badge, *share.network);
    }

private:
    [[nodiscard]] QRect mirrored(const QRect& rect) const {
        return QStyle::visualRect(m_option.direction, m_option.rect, rect);
    }

    void paintSelection(const QRect& area) {
        const bool selected = m_option.state & QStyle::State_Selected;
        const bool hovered = m_option.state & QStyle::State_MouseOver;
        m_painter.setRenderHint(QPainter::Antialiasing);
        if (selected || hovered) {
            m_painter.setPen(Qt::NoPen);
            m_painter.setBrush(
                color(selected ? Tint::selection : Tint::separator, m_option.palette));
            m_painter.drawRoundedRect(area, selectionRadius, selectionRadius);
        }
        if ((m_option.state & QStyle::State_HasFocus) &&
            (m_option.state & QStyle::State_KeyboardFocusChange)) {
            m_painter.setPen(QPen(color(Tint::accent, m_option.palette), 2));
            m_painter.setBrush(Qt::NoBrush);
            m_painter.drawRoundedRect(QRectF(area).adjusted(1, 1, -1, -1), selectionRadius,
                                      selectionRadius);
        }
    }

    /// The state in words at the end of the first line; returns the width that it takes. The name
    /// gives way to a word, the longer wording to both.
    int paintWord(const ShareRow& share, const QRect& line) {
        const QFontMetrics metrics(fontFor(TextRole::caption2));
        const QFontMetrics nameMetrics(fontFor(TextRole::body));
        // Widths are rounded, so each text has one more.
        const auto widthOf = [](const QFontMetrics& of, const QString& text) {
            return of.horizontalAdvance(text) + 1;
        };
        const int besideName = line.width() - spacing::small - widthOf(nameMetrics, share.name);
        QString word =
            needsWord(share.state) ? accessibilityLabel(share.state) : text("main.edited");
        if (share.state.kind() == MountState::Kind::failed && widthOf(metrics, word) > besideName)
            word = text("status.failed");
        const int width =
            std::min(widthOf(metrics, word), std::max(line.width() * 2 / 3, besideName));
        drawText(QRect(line.right() + 1 - width, line.top(), width, line.height()), word,
                 TextRole::caption2, wordTint(share.state));
        return width + spacing::small;
    }

    void paintBadge(const QRect& line, const NetworkMatchResult& result) {
        drawSymbolLine(line,
                       result.matched ? QStringLiteral("checkmark.circle.fill")
                                      : QStringLiteral("exclamationmark.triangle.fill"),
                       text(statusTextKey(result)), result.matched ? Tint::green : Tint::orange,
                       Qt::ElideRight);
    }

    void drawSymbolLine(const QRect& line, const QString& symbol, const QString& content, Tint tint,
                        Qt::TextElideMode elide) {
        const QRect place(line.left(), line.center().y() - symbolSize / 2 + 1, symbolSize,
                          symbolSize);
        m_painter.drawPixmap(mirrored(place),
                             symbolPixmap(symbol, symbolSize, color(tint, m_option.palette),
                                          m_painter.device()->devicePixelRatioF()));
        drawText(line.adjusted(symbolSize + spacing::tight, 0, 0, 0), content, TextRole::caption2,
                 tint, elide);
    }

    void drawText(const QRect& line, const QString& content, TextRole role, Tint tint,
                  Qt::TextElideMode elide = Qt::ElideRight) {
        const QFont font = fontFor(role);
        m_painter.setFont(font);
        m_painter.setPen(color(tint, m_option.palette));
        const QString shown = QFontMetrics(font).elidedText(content, elide, line.width());
        const auto side = m_option.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
        m_painter.drawText(mirrored(line),
                           int(side | Qt::AlignVCenter | Qt::AlignAbsolute) | Qt::TextSingleLine,
                           shown);
    }

    QPainter& m_painter;
    const QStyleOptionViewItem& m_option;
};

} // namespace

ShareRowDelegate::ShareRowDelegate(const Pulse& pulse, QObject* parent)
    : QStyledItemDelegate(parent), m_pulse(pulse) {}

void ShareRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
    const auto* model = qobject_cast<const ShareListModel*>(index.model());
    if (!model)
        return;
    painter->save();
    // Each text reads in its own direction: the end of an Arabic name is cut at its left.
    painter->setLayoutDirection(Qt::LayoutDirectionAuto);
    RowPainter(*painter, option).paint(model->row(index.row()), m_pulse.phase());
    painter->restore();
}

QSize ShareRowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {0, rowHeight()};
}

QRect ShareRowDelegate::linkRect(const QRect& row, const ShareRow& share,
                                 Qt::LayoutDirection direction) {
    if (!share.mountPoint)
        return {};
    QRect line = RowLayout(row, share.network.has_value()).subtitle;
    const int textWidth =
        QFontMetrics(fontFor(TextRole::caption2)).horizontalAdvance(shownPath(*share.mountPoint));
    line.setWidth(std::min(line.width(), symbolSize + spacing::tight + textWidth));
    return QStyle::visualRect(direction, row, line);
}

} // namespace harbrix
