#include "ui/widgets/NoticeBar.h"

#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/TextLabel.h"

#include <QHBoxLayout>

namespace harbrix {

NoticeBar::NoticeBar(QWidget* parent)
    : Panel(Tint::card, parent), m_text(new TextLabel(TextRole::callout, Tint::primary)) {
    auto* content = new QWidget;
    auto* row = new QHBoxLayout(content);
    row->setContentsMargins(spacing::regular, spacing::small, spacing::regular, spacing::small);
    row->setSpacing(spacing::small);
    row->addWidget(
        new SymbolView(QStringLiteral("exclamationmark.triangle.fill"), 16, Tint::orange), 0,
        Qt::AlignTop);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row->addWidget(m_text, 1);
    setContent(content);
    hide();
}

void NoticeBar::setText(const QString& text) {
    m_text->setText(text);
    setAccessibleName(text);
    setVisible(!text.isEmpty());
}

QString NoticeBar::text() const {
    return m_text->text();
}

} // namespace harbrix
