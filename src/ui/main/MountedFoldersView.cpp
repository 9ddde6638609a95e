#include "ui/main/MountedFoldersView.h"

#include "services/Text.h"
#include "ui/main/MountPath.h"
#include "ui/widgets/AccessibleRole.h"
#include "ui/widgets/SymbolIcon.h"

#include <QFontMetrics>
#include <QPainter>
#include <QSet>
#include <QStyle>
#include <QVBoxLayout>

namespace harbrix {
namespace {

constexpr int narrowestColumn = 220;
constexpr int gap = spacing::regular;
constexpr qreal cardRadius = 8;
constexpr int padding = spacing::regular;
constexpr int partGap = 10;
constexpr int driveSize = 28;
constexpr int folderSize = 14;

} // namespace

struct MountedFolderCard::Places {
    QRect drive;
    QRect name;
    QRect address;
    int divider = 0;
    QRect folder;
    QRect path;
    QRect button;
    int height = 0;
};

MountedFolderCard::Places MountedFolderCard::places() const {
    Places at;
    const int inner = width() - 2 * padding;
    const int nameHeight = lineHeight(TextRole::headline);
    const int smallHeight = lineHeight(TextRole::caption);
    int y = padding;
    const int head = std::max(driveSize, nameHeight + spacing::hair + smallHeight);
    at.drive = {padding, y + (head - driveSize) / 2, driveSize, driveSize};
    const int x = padding + driveSize + spacing::medium;
    at.name = {x, y, width() - padding - x, nameHeight};
    at.address = {x, y + nameHeight + spacing::hair, at.name.width(), smallHeight};
    y += head + partGap;
    at.divider = y;
    y += 1 + partGap;
    at.folder = {padding, y + (smallHeight - folderSize) / 2, folderSize, folderSize};
    const int pathX = padding + folderSize + spacing::small - spacing::hair;
    at.path = {pathX, y, width() - padding - pathX, smallHeight};
    y += smallHeight + partGap + spacing::hair;
    const QSize button = m_open->sizeHint();
    at.button = {padding, y, std::min(button.width(), inner), button.height()};
    at.height = y + button.height() + padding;
    return at;
}

MountedFolderCard::MountedFolderCard(const MountedShare& share, QWidget* parent)
    : QWidget(parent), m_open(new QPushButton(this)) {
    setObjectName(QStringLiteral("mountedFolderCard"));
    setAccessibleRole(*this, QAccessible::Grouping);
    m_open->setObjectName(QStringLiteral("openMountedFolder"));
    m_open->setIcon(symbolIcon(QStringLiteral("arrow.up.forward.app")));
    connect(m_open, &QPushButton::clicked, this,
            [this] { emit openRequested(m_share.mountPoint); });
    setShare(share);
    retranslate();
}

void MountedFolderCard::setShare(const MountedShare& share) {
    m_share = share;
    const QString path = shownPath(share.mountPoint);
    setToolTip(path);
    setAccessibleName(share.name);
    setAccessibleDescription(share.address + QLatin1String(", ") + path);
    m_open->setAccessibleDescription(share.name);
    update();
}

void MountedFolderCard::retranslate() {
    m_open->setText(text("main.openInFinder"));
    arrange();
}

void MountedFolderCard::arrange() {
    const Places at = places();
    m_open->setGeometry(QStyle::visualRect(layoutDirection(), rect(), at.button));
    if (std::exchange(m_height, at.height) != at.height)
        updateGeometry();
}

void MountedFolderCard::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange)
        arrange();
}

QSize MountedFolderCard::sizeHint() const {
    return {narrowestColumn, m_height};
}

void MountedFolderCard::resizeEvent(QResizeEvent*) {
    arrange();
}

void MountedFolderCard::paintEvent(QPaintEvent*) {
    const Places at = places();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(color(Tint::separator, palette()));
    painter.setBrush(color(Tint::card, palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cardRadius, cardRadius);
    painter.fillRect(QRect(padding, at.divider, width() - 2 * padding, 1),
                     color(Tint::separator, palette()));

    const auto mirrored = [this](const QRect& place) {
        return QStyle::visualRect(layoutDirection(), rect(), place);
    };
    const auto drawSymbol = [&](const char* name, const QRect& place, Tint tint) {
        painter.drawPixmap(mirrored(place),
                           symbolPixmap(QString::fromLatin1(name), place.width(),
                                        color(tint, palette()), devicePixelRatioF()));
    };
    const auto drawText = [&](const QString& content, const QRect& place, TextRole role, Tint tint,
                              Qt::TextElideMode elide) {
        painter.setFont(fontFor(role));
        painter.setPen(color(tint, palette()));
        const auto side = layoutDirection() == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
        painter.drawText(mirrored(place),
                         int(side | Qt::AlignVCenter | Qt::AlignAbsolute) | Qt::TextSingleLine,
                         painter.fontMetrics().elidedText(content, elide, place.width()));
    };
    drawSymbol("externaldrive.fill", at.drive, Tint::green);
    drawText(m_share.name, at.name, TextRole::headline, Tint::primary, Qt::ElideRight);
    drawText(m_share.address, at.address, TextRole::caption, Tint::secondary, Qt::ElideRight);
    drawSymbol("folder", at.folder, Tint::secondary);
    drawText(shownPath(m_share.mountPoint), at.path, TextRole::caption, Tint::secondary,
             Qt::ElideMiddle);
}

MountedFoldersView::MountedFoldersView(QWidget* parent)
    : QScrollArea(parent), m_title(new TextLabel(TextRole::title2, Tint::primary)),
      m_content(new QWidget), m_grid(new AdaptiveGrid(narrowestColumn, gap)) {
    setObjectName(QStringLiteral("mountedFolders"));
    setFocusPolicy(Qt::NoFocus);
    m_content->setObjectName(QStringLiteral("mountedFoldersContent"));
    auto* column = new QVBoxLayout(m_content);
    column->setContentsMargins(spacing::huge, spacing::large, spacing::regular, spacing::huge);
    column->setSpacing(spacing::regular);
    column->addWidget(m_title);
    column->addLayout(m_grid);
    column->addStretch();
    setWidget(m_content);
    setWidgetResizable(true);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setAutoFillBackground(false);
    m_content->setAutoFillBackground(false);
    retranslate();
}

void MountedFoldersView::setShares(const std::vector<MountedShare>& shares) {
    // Cards of shares that are gone go first, so that the others keep their places and their focus.
    QSet<QUuid> wanted;
    for (const MountedShare& share : shares)
        wanted.insert(share.id);
    for (std::size_t index = m_cards.size(); index-- > 0;) {
        if (wanted.contains(m_cards[index]->share().id))
            continue;
        delete m_grid->takeAt(int(index));
        delete m_cards[index];
        m_cards.erase(m_cards.begin() + std::ptrdiff_t(index));
    }
    for (std::size_t index = 0; index < shares.size(); ++index)
        putCard(int(index), shares[index]);
}

void MountedFoldersView::putCard(int index, const MountedShare& share) {
    const auto at = m_cards.begin() + index;
    if (at != m_cards.end() && (*at)->share().id == share.id) {
        if ((*at)->share() != share)
            (*at)->setShare(share);
        return;
    }
    auto* card = new MountedFolderCard(share);
    connect(card, &MountedFolderCard::openRequested, this, &MountedFoldersView::openRequested);
    m_grid->insertWidget(index, card);
    m_cards.insert(at, card);
    card->show();
}

void MountedFoldersView::retranslate() {
    m_title->setText(text("main.mountedFoldersTitle"));
    for (MountedFolderCard* card : m_cards)
        card->retranslate();
}

} // namespace harbrix
