#include "ui/browser/FileRowDelegate.h"

#include "ui/browser/FileListModel.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/Theme.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

namespace harbrix {
namespace {

constexpr int symbolFrame = 20;
constexpr int kindSymbolSize = 16;
constexpr int symbolGap = 6;
constexpr int cellPadding = spacing::small;

} // namespace

int FileRowDelegate::rowHeight() {
    return lineHeight(TextRole::body) + 2 * spacing::tight + 2;
}

void FileRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    const auto* model = qobject_cast<const FileListModel*>(index.model());
    if (!model)
        return;
    painter->save();
    const bool isSelected = option.state & QStyle::State_Selected;
    if (isSelected)
        painter->fillRect(option.rect, color(Tint::selection, option.palette));
    else if (index.row() % 2 != 0)
        painter->fillRect(option.rect, color(Tint::window, option.palette));
    const auto mirrored = [&option](const QRect& place) {
        return QStyle::visualRect(option.direction, option.rect, place);
    };
    QRect place = option.rect.adjusted(cellPadding, 0, -cellPadding, 0);
    const bool isName = index.column() == FileListModel::Name;
    if (isName) {
        const FileItem& item = model->item(index.row());
        const QRect symbol(place.left() + (symbolFrame - kindSymbolSize) / 2,
                           place.center().y() - kindSymbolSize / 2 + 1, kindSymbolSize,
                           kindSymbolSize);
        painter->drawPixmap(
            mirrored(symbol),
            symbolPixmap(item.iconName(), kindSymbolSize,
                         color(item.isDirectory ? Tint::blue : Tint::secondary, option.palette),
                         painter->device()->devicePixelRatioF()));
        place.setLeft(place.left() + symbolFrame + symbolGap);
    }
    painter->setFont(fontFor(TextRole::body));
    painter->setPen(color(isName ? Tint::primary : Tint::secondary, option.palette));
    const QString shown =
        painter->fontMetrics().elidedText(model->cellText(index.row(), index.column()),
                                          isName ? Qt::ElideMiddle : Qt::ElideRight, place.width());
    const auto side = option.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    painter->drawText(mirrored(place),
                      int(side | Qt::AlignVCenter | Qt::AlignAbsolute) | Qt::TextSingleLine, shown);
    painter->restore();
}

} // namespace harbrix
