#include "ui/widgets/Panel.h"

#include <QPainter>
#include <QVBoxLayout>

namespace harbrix {

Panel::Panel(Tint tint, QWidget* parent) : QWidget(parent), m_tint(tint) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
}

void Panel::setContent(QWidget* content) {
    layout()->addWidget(content);
}

void Panel::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), color(m_tint, palette()));
}

} // namespace harbrix
