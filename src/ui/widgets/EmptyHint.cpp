#include "ui/widgets/EmptyHint.h"

#include "ui/widgets/SymbolIcon.h"

#include <QVBoxLayout>

namespace harbrix {

EmptyHint::EmptyHint(const Look& look, QWidget* parent)
    : QWidget(parent), m_title(new TextLabel(look.title, Tint::secondary)),
      m_detail(new TextLabel(TextRole::caption, Tint::tertiary)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(spacing::regular, spacing::regular, spacing::regular,
                               spacing::regular);
    column->setSpacing(spacing::small);
    column->addStretch(2);
    column->addWidget(new SymbolView(look.symbol, look.symbolSize, Tint::secondary), 0,
                      Qt::AlignHCenter);
    column->addSpacing(spacing::tight);
    for (TextLabel* label : {m_title, m_detail}) {
        label->setAlignment(Qt::AlignCenter);
        column->addWidget(label);
    }
    column->addStretch(3);
}

void EmptyHint::setTexts(const QString& title, const QString& detail) {
    m_title->setText(title);
    m_detail->setText(detail);
    m_detail->setVisible(!detail.isEmpty());
}

} // namespace harbrix
