#pragma once

#include "ui/widgets/TextLabel.h"

#include <QList>
#include <QSet>
#include <QVBoxLayout>
#include <QWidget>

class QPushButton;
class QScrollArea;

namespace harbrix {

/// A rounded surface whose visible rows are parted by hairlines.
class CardFrame : public QWidget {
    Q_OBJECT

public:
    explicit CardFrame(QWidget* parent = nullptr);

    /// Whether a hairline parts a row from the one above it.
    enum class Parting { Hairline, None };

    /// Appends a row; the card owns it.
    void addRow(QWidget* row, Parting parting = Parting::Hairline);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* m_rows;
    QSet<const QWidget*> m_joined; ///< to the row above
};

/// A hairline.
class Divider : public QWidget {
    Q_OBJECT

public:
    explicit Divider(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A label and its control: side by side, or one above the other where that is too narrow. A
/// switch, a stepper and a text that only tells stand at the trailing edge, whatever the width.
class FormRow : public QWidget {
    Q_OBJECT

public:
    FormRow(QWidget* control, QWidget* parent = nullptr);

    /// Also the accessible name of the control.
    void setText(const QString& text);
    /// Puts a symbol before the label, in a frame of this width.
    void setSymbol(const QString& name, int width);
    [[nodiscard]] bool isCompact() const { return m_compact; }
    [[nodiscard]] int labelWidth() const;
    /// What the hint in an empty field takes.
    [[nodiscard]] int hintWidth() const;
    void setStacked(bool stacked, int labelColumn);

signals:
    void textChanged();

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

    /// Without one, the card stands alone.
    void setTitle(const QString& title);
    FormRow* addRow(QWidget* control);
    /// A row of explanation.
    TextLabel* addNote();
    /// An explanation of the row above it, which it joins.
    TextLabel* addHint();
    /// Any other row, with the margins of a row.
    void addContent(QWidget* content);
    /// A row of buttons.
    void addButtons(const QList<QPushButton*>& buttons);
    [[nodiscard]] const QList<FormRow*>& rows() const { return m_rows; }

signals:
    /// Other rows are to be seen, or other texts.
    void rowsChanged();
    /// The user or the program changed what a control of the section holds.
    void edited();

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
    static constexpr int narrowest = 240;

    explicit GroupedForm(QWidget* parent = nullptr);

    void addSection(FormSection* section);

    /// Narrower than rows whose labels stand beside: they give way when it comes to that.
    [[nodiscard]] QSize minimumSizeHint() const override { return {narrowest, 0}; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void arrangeRows();

    QVBoxLayout* m_sections;
    QList<FormSection*> m_all;
};

/// The form in an area that scrolls up and down.
[[nodiscard]] QScrollArea* makeFormArea(GroupedForm* form);

} // namespace harbrix
