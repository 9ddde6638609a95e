#include "ui/widgets/GroupedForm.h"

#include "ui/widgets/AccessibleRole.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/WheelGuard.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>

namespace harbrix {
namespace {

constexpr qreal cardRadius = 8;
constexpr int labelGap = spacing::regular;
constexpr int narrowestField = 168;
constexpr int fieldPadding = 2 * spacing::medium; ///< more than a field has beside its text
constexpr int rowSymbolSize = 16;

/// The section tells when what the control holds has changed.
void followEdits(QWidget* control, FormSection* section) {
    if (const auto* field = qobject_cast<QLineEdit*>(control))
        QObject::connect(field, &QLineEdit::textChanged, section, &FormSection::edited);
    else if (const auto* picker = qobject_cast<QComboBox*>(control))
        QObject::connect(picker, &QComboBox::currentIndexChanged, section, &FormSection::edited);
    else if (const auto* button = qobject_cast<QAbstractButton*>(control))
        QObject::connect(button, &QAbstractButton::toggled, section, &FormSection::edited);
}

bool standsAtTheEdge(const QWidget* control) {
    return qobject_cast<const QAbstractButton*>(control) ||
           qobject_cast<const QAbstractSpinBox*>(control) || qobject_cast<const QLabel*>(control);
}

} // namespace

CardFrame::CardFrame(QWidget* parent) : QWidget(parent), m_rows(new QVBoxLayout(this)) {
    m_rows->setContentsMargins(0, 1, 0, 1);
    m_rows->setSpacing(0);
    setAccessibleRole(*this, QAccessible::Grouping);
}

void CardFrame::addRow(QWidget* row, Parting parting) {
    m_rows->addWidget(row);
    if (parting == Parting::None)
        m_joined << row;
}

void CardFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(color(Tint::separator, palette()));
    painter.setBrush(color(Tint::card, palette()));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cardRadius, cardRadius);
    painter.setRenderHint(QPainter::Antialiasing, false);
    bool first = true;
    for (int index = 0; index < m_rows->count(); ++index) {
        const QWidget* row = m_rows->itemAt(index)->widget();
        if (row->isHidden())
            continue;
        if (!first && !m_joined.contains(row))
            painter.fillRect(QRect(spacing::medium, row->y(), width() - 2 * spacing::medium, 1),
                             color(Tint::separator, palette()));
        first = false;
    }
}

Divider::Divider(QWidget* parent) : QWidget(parent) {
    setFixedHeight(1);
}

void Divider::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(contentsRect(), color(Tint::separator, palette()));
}

FormRow::FormRow(QWidget* control, QWidget* parent)
    : QWidget(parent), m_label(new TextLabel(TextRole::body, Tint::primary)), m_control(control),
      m_layout(new QBoxLayout(QBoxLayout::LeftToRight, this)), m_compact(standsAtTheEdge(control)) {
    m_layout->setContentsMargins(spacing::medium, spacing::small, spacing::medium, spacing::small);
    m_layout->addWidget(m_label, m_compact ? 1 : 0);
    m_layout->addWidget(m_control, m_compact ? 0 : 1);
    m_layout->setSpacing(labelGap);
    m_label->setBuddy(m_control);
    m_label->setMinimumHeight(m_compact ? 28 : 0);
    m_label->setAttribute(Qt::WA_TransparentForMouseEvents);
    leaveWheelToScrolling(*m_control);
}

void FormRow::setText(const QString& text) {
    m_label->setText(text);
    // A text tells of itself; its label says what it is about.
    if (!qobject_cast<QLabel*>(m_control))
        m_control->setAccessibleName(text);
    emit textChanged();
}

void FormRow::setSymbol(const QString& name, int width) {
    auto* frame = new QWidget;
    frame->setFixedWidth(width);
    auto* centred = new QHBoxLayout(frame);
    centred->setContentsMargins(QMargins());
    centred->addWidget(new SymbolView(name, rowSymbolSize, Tint::secondary), 0, Qt::AlignCenter);
    m_layout->insertWidget(0, frame);
    m_layout->setSpacing(spacing::small);
}

int FormRow::labelWidth() const {
    // The advance is rounded, and a label that is half a pixel short wraps.
    return m_compact ? 0 : m_label->fontMetrics().horizontalAdvance(m_label->text()) + 1;
}

int FormRow::hintWidth() const {
    const auto* field = qobject_cast<QLineEdit*>(m_control);
    return field ? field->fontMetrics().horizontalAdvance(field->placeholderText()) + fieldPadding
                 : 0;
}

void FormRow::mouseReleaseEvent(QMouseEvent* event) {
    // The whole row of a switch is its target, as its label stands far from it.
    if (auto* button = qobject_cast<QAbstractButton*>(m_control);
        button && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        button->click();
    QWidget::mouseReleaseEvent(event);
}

void FormRow::setStacked(bool stacked, int labelColumn) {
    if (m_compact)
        return;
    m_layout->setDirection(stacked ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    m_layout->setSpacing(stacked ? spacing::tight : labelGap);
    m_label->setMinimumWidth(stacked ? 0 : labelColumn);
    m_label->setMaximumWidth(stacked ? QWIDGETSIZE_MAX : labelColumn);
    // A label keeps the hints of its former least width until it is set anew.
    m_label->setIndent(m_label->indent());
}

FormSection::FormSection(QWidget* parent)
    : QWidget(parent), m_title(new TextLabel(TextRole::headline, Tint::primary)),
      m_card(new CardFrame) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing::small);
    m_title->setContentsMargins(spacing::tight, 0, spacing::tight, 0);
    m_title->hide();
    column->addWidget(m_title);
    column->addWidget(m_card);
}

void FormSection::setTitle(const QString& title) {
    m_title->setText(title);
    m_title->setVisible(!title.isEmpty());
    m_card->setAccessibleName(title);
}

FormRow* FormSection::addRow(QWidget* control) {
    followEdits(control, this);
    auto* row = new FormRow(control);
    m_rows << row;
    m_card->addRow(row);
    connect(row, &FormRow::textChanged, this, &FormSection::rowsChanged);
    return row;
}

TextLabel* FormSection::addNote() {
    auto* note = new TextLabel(TextRole::caption, Tint::secondary);
    addContent(note);
    return note;
}

TextLabel* FormSection::addHint() {
    auto* hint = new TextLabel(TextRole::caption, Tint::secondary);
    hint->setContentsMargins(spacing::medium, 0, spacing::medium, spacing::medium);
    m_card->addRow(hint, CardFrame::Parting::None);
    return hint;
}

void FormSection::addContent(QWidget* content) {
    content->setContentsMargins(spacing::medium, spacing::small, spacing::medium, spacing::small);
    m_card->addRow(content);
}

void FormSection::addButtons(const QList<QPushButton*>& buttons) {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(QMargins());
    layout->setSpacing(spacing::small);
    for (QPushButton* button : buttons)
        layout->addWidget(button);
    layout->addStretch();
    addContent(row);
}

GroupedForm::GroupedForm(QWidget* parent) : QWidget(parent), m_sections(new QVBoxLayout(this)) {
    m_sections->setContentsMargins(spacing::regular, spacing::regular, spacing::regular,
                                   spacing::huge);
    m_sections->setSpacing(spacing::huge);
    m_sections->addStretch();
}

void GroupedForm::addSection(FormSection* section) {
    m_all << section;
    m_sections->insertWidget(m_sections->count() - 1, section);
    connect(section, &FormSection::rowsChanged, this, &GroupedForm::arrangeRows);
}

void GroupedForm::arrangeRows() {
    int labelColumn = 0;
    int fieldColumn = narrowestField;
    for (const FormSection* section : m_all)
        for (const FormRow* row : section->rows())
            if (!row->isHidden()) {
                labelColumn = std::max(labelColumn, row->labelWidth());
                fieldColumn = std::max(fieldColumn, row->hintWidth());
            }
    const int available =
        std::min(width(), widest) - 2 * spacing::regular - 2 * spacing::medium - labelGap;
    const bool stacked = labelColumn + fieldColumn > available;
    for (const FormSection* section : m_all)
        for (FormRow* row : section->rows())
            row->setStacked(stacked, labelColumn);
}

void GroupedForm::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    // Wider windows get wider margins instead of endless fields.
    const int margin = std::max(int(spacing::regular), (width() - widest) / 2 + spacing::regular);
    // The bar beside the form counts to the margin, so that the form stands in the middle.
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    m_sections->setContentsMargins(margin, spacing::regular, margin - bar, spacing::huge);
    arrangeRows();
}

QScrollArea* makeFormArea(GroupedForm* form) {
    form->setAutoFillBackground(false);
    auto* scroll = new QScrollArea;
    scroll->setObjectName(QStringLiteral("formScroll"));
    scroll->setFocusPolicy(Qt::NoFocus); // it follows the control that has the focus
    scroll->setWidget(form);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    scroll->viewport()->setAutoFillBackground(false);
    return scroll;
}

} // namespace harbrix
