#pragma once

#include "ui/widgets/TextLabel.h"

#include <QList>
#include <QVBoxLayout>
#include <QWidget>

namespace harbrix {

/// A rounded surface whose visible rows are parted by hairlines.
class CardFrame : public QWidget {
    Q_OBJECT

public:
    explicit CardFrame(QWidget* parent = nullptr);

    /// Appends a row; the card owns it.
    void addRow(QWidget* row);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* m_rows;
};

/// A label and its control: side by side, or one above the other where that is too narrow.
class FormRow : public QWidget {
    Q_OBJECT

public:
    FormRow(QWidget* control, QWidget* parent = nullptr);

    /// Also the accessible name of the control.
    void setText(const QString& text);
    /// A control of fixed size stands at the trailing edge, whatever the width.
    [[nodiscard]] bool isCompact() const { return m_compact; }
    [[nodiscard]] int labelWidth() const;
    void setStacked(bool stacked, int labelColumn);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    TextLabel* m_label;
    QWidget* m_control;
    QBoxLayout* m_layout;
    bool m_compact;
};

/// A titled card of a form.
class FormSection : public QWidget {
    Q_OBJECT

public:
    explicit FormSection(QWidget* parent = nullptr);

    void setTitle(const QString& title);
    FormRow* addRow(QWidget* control);
    /// A row of explanation.
    TextLabel* addNote(Tint tint = Tint::secondary);
    /// Any other row.
    void addContent(QWidget* content);
    [[nodiscard]] const QList<FormRow*>& rows() const { return m_rows; }

private:
    TextLabel* m_title;
    CardFrame* m_card;
    QList<FormRow*> m_rows;
};

/// A column of sections that decides for all of their rows whether labels stand beside or above.
class GroupedForm : public QWidget {
    Q_OBJECT

public:
    static constexpr int widest = 680;

    explicit GroupedForm(QWidget* parent = nullptr);

    FormSection* addSection();
    /// To be called after texts or visible rows have changed.
    void arrangeRows();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QVBoxLayout* m_sections;
    QList<FormSection*> m_all;
};

} // namespace harbrix
