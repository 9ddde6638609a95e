#include "ui/widgets/TextLabel.h"

#include <QEvent>
#include <QPainter>
#include <QTextDocument>

namespace harbrix {

TextLabel::TextLabel(TextRole role, Tint tint, Lines lines, QWidget* parent)
    : QLabel(parent), m_role(role), m_tint(tint), m_lines(lines) {
    setTextFormat(Qt::PlainText);
    setWordWrap(lines == Lines::Wrapped);
    setFont(fontFor(role));
    dress();
}

void TextLabel::setTint(Tint tint) {
    m_tint = tint;
    dress();
}

QSize TextLabel::minimumSizeHint() const {
    QSize size = QLabel::minimumSizeHint();
    if (m_lines == Lines::One)
        size.setWidth(fontMetrics().horizontalAdvance(QStringLiteral("MMM…")));
    return size;
}

void TextLabel::dress() {
    QPalette dressed = palette();
    const QColor wanted = color(m_tint, dressed);
    if (dressed.color(QPalette::WindowText) == wanted)
        return;
    dressed.setColor(QPalette::WindowText, wanted);
    setPalette(dressed);
}

void TextLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        dress();
    else if (event->type() == QEvent::ApplicationFontChange)
        setFont(fontFor(m_role));
}

void TextLabel::paintEvent(QPaintEvent* event) {
    if (m_lines == Lines::Wrapped)
        return QLabel::paintEvent(event);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    setToolTip(shown == text() ? QString() : plainToolTip(text()));
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(
        contentsRect(),
        int(alignment() & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal) : text;
}

} // namespace harbrix
