#include "ui/browser/BreadcrumbView.h"

#include "files/BrowserContents.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/TextLabel.h"
#include "ui/widgets/Theme.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

namespace harbrix {
namespace {

constexpr qreal barRadius = 6;
constexpr int chevronSize = 10;
constexpr int crumbEdge = 6;
constexpr int widestCrumb = 260;

QFont crumbFont(bool isLast) {
    QFont font = fontFor(TextRole::callout);
    font.setWeight(isLast ? QFont::DemiBold : QFont::Normal);
    return font;
}

/// A step of the path, as plain text.
class CrumbButton final : public QAbstractButton {
public:
    CrumbButton(const QString& title, bool isLast) : m_isLast(isLast) {
        setObjectName(QStringLiteral("crumb"));
        setText(title);
        setAccessibleName(title);
        setFont(crumbFont(isLast));
        setCursor(isLast ? Qt::ArrowCursor : Qt::PointingHandCursor);
        setAttribute(Qt::WA_Hover);
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
        if (fontMetrics().horizontalAdvance(title) > widestCrumb)
            setToolTip(plainToolTip(title));
    }

    [[nodiscard]] QSize sizeHint() const override {
        const int width = fontMetrics().horizontalAdvance(text()) + 2;
        return {std::min(width, widestCrumb), fontMetrics().height()};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        QFont shown = font();
        shown.setUnderline(underMouse() || (hasFocus() && !m_isLast));
        painter.setFont(shown);
        painter.setPen(color(m_isLast ? Tint::primary : Tint::blue, palette()));
        painter.drawText(rect(), int(Qt::AlignCenter) | Qt::TextSingleLine,
                         QFontMetrics(shown).elidedText(text(), Qt::ElideMiddle, width()));
    }

private:
    bool m_isLast;
};

} // namespace

BreadcrumbView::BreadcrumbView(QWidget* parent)
    : QScrollArea(parent), m_bar(new QWidget), m_crumbs(new QHBoxLayout(m_bar)) {
    setObjectName(QStringLiteral("pathBar"));
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(m_bar);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_bar->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    m_crumbs->setContentsMargins(spacing::small, crumbEdge, spacing::small, crumbEdge);
    m_crumbs->setSpacing(spacing::hair);
    // A longer path is read at its end.
    connect(horizontalScrollBar(), &QScrollBar::rangeChanged, this,
            [this](int, int maximum) { horizontalScrollBar()->setValue(maximum); });
}

QSize BreadcrumbView::sizeHint() const {
    return {0, QFontMetrics(crumbFont(true)).height() + 2 * crumbEdge + 2};
}

QSize BreadcrumbView::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

void BreadcrumbView::setPath(const QUrl& currentPath, const QUrl& mountPoint,
                             const QString& nasName) {
    while (QLayoutItem* item = m_crumbs->takeAt(0)) {
        // It may be the very button that was clicked.
        if (QWidget* widget = item->widget()) {
            widget->hide();
            widget->setObjectName({});
            widget->deleteLater();
        }
        delete item;
    }
    const std::vector<Crumb> crumbs = breadcrumbs(currentPath, mountPoint, nasName);
    for (const Crumb& crumb : crumbs)
        addCrumb(crumb, &crumb == &crumbs.front(), &crumb == &crumbs.back());
    m_crumbs->addStretch();
}

void BreadcrumbView::addCrumb(const Crumb& crumb, bool isFirst, bool isLast) {
    if (!isFirst) {
        m_crumbs->addSpacing(spacing::hair);
        m_crumbs->addWidget(
            new SymbolView(QStringLiteral("chevron.right"), chevronSize, Tint::secondary));
        m_crumbs->addSpacing(spacing::hair);
    }
    auto* button = new CrumbButton(crumb.title, isLast);
    connect(button, &QAbstractButton::clicked, this,
            [this, url = crumb.url] { emit navigateRequested(url); });
    m_crumbs->addWidget(button);
}

void BreadcrumbView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color(Tint::border, palette()), 1));
    painter.setBrush(color(Tint::control, palette()));
    painter.drawRoundedRect(QRectF(viewport()->rect()).adjusted(0.5, 0.5, -0.5, -0.5), barRadius,
                            barRadius);
}

void BreadcrumbView::wheelEvent(QWheelEvent* event) {
    const QPoint turned = event->angleDelta();
    const int steps = std::abs(turned.x()) > std::abs(turned.y()) ? turned.x() : turned.y();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - steps / 2);
    event->accept();
}

} // namespace harbrix
