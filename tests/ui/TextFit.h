#pragma once

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QFontMetrics>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOption>
#include <QTabBar>
#include <QToolButton>

namespace harbrix {

/// Where the texts of a window do not fit: each as the widget and the text.
class TextFit {
public:
    explicit TextFit(QWidget& window) : m_window(window) {
        look(window);
        for (QWidget* widget : window.findChildren<QWidget*>())
            if (widget->isVisibleTo(&window) && widget->window() == &window)
                look(*widget);
        if (auto* menu = qobject_cast<QMenu*>(&window))
            for (QAction* action : menu->actions())
                need(*menu, action->text(),
                     {menu->fontMetrics().horizontalAdvance(action->text()), 0},
                     menu->actionGeometry(action).size());
    }

    [[nodiscard]] const QStringList& faults() const { return m_faults; }

private:
    void need(const QWidget& widget, const QString& text, const QSize& needed, const QSize& seen) {
        if (needed.width() > seen.width() || needed.height() > seen.height())
            m_faults << QStringLiteral("%1 %2: \"%3\" needs %4x%5, has %6x%7")
                            .arg(QString::fromLatin1(widget.metaObject()->className()),
                                 widget.objectName(), text)
                            .arg(needed.width())
                            .arg(needed.height())
                            .arg(seen.width())
                            .arg(seen.height());
    }

    /// How much of a part of the widget the user can get to see, scrolling if need be.
    [[nodiscard]] QSize visibleSize(const QWidget& widget, QRect part) const {
        for (const QWidget* at = &widget; at != &m_window; at = at->parentWidget()) {
            const QWidget* parent = at->parentWidget();
            part = part.translated(at->pos());
            const auto* area = qobject_cast<const QAbstractScrollArea*>(parent->parentWidget());
            if (!area || area->viewport() != parent) {
                part &= parent->rect();
                continue;
            }
            if (area->horizontalScrollBarPolicy() == Qt::ScrollBarAlwaysOff)
                part &= QRect(0, part.top(), parent->width(), part.height());
            break; // it is of no matter how far it is scrolled
        }
        return part.size();
    }
    [[nodiscard]] QSize visibleSize(const QWidget& widget) const {
        return visibleSize(widget, widget.rect());
    }

    void look(QWidget& widget) {
        if (auto* label = qobject_cast<QLabel*>(&widget))
            lookAt(*label);
        else if (auto* button = qobject_cast<QAbstractButton*>(&widget))
            lookAt(*button);
        else if (auto* picker = qobject_cast<QComboBox*>(&widget))
            lookAt(*picker);
        else if (auto* field = qobject_cast<QLineEdit*>(&widget))
            lookAt(*field);
        else if (auto* tabs = qobject_cast<QTabBar*>(&widget))
            lookAt(*tabs);
        else if (auto* header = qobject_cast<QHeaderView*>(&widget))
            lookAt(*header);
    }

    void lookAt(const QLabel& label) {
        if (label.text().isEmpty())
            return;
        const QMargins margins = label.contentsMargins() + QMargins(label.margin(), label.margin(),
                                                                    label.margin(), label.margin());
        const int width = label.width() - margins.left() - margins.right();
        QSize needed;
        if (label.textFormat() == Qt::RichText ||
            (label.textFormat() == Qt::AutoText && Qt::mightBeRichText(label.text())))
            needed = {label.minimumSizeHint().width(), label.heightForWidth(label.width())};
        else
            needed = label.fontMetrics()
                         .boundingRect(QRect(0, 0, width, QWIDGETSIZE_MAX),
                                       label.wordWrap() ? Qt::TextWordWrap : Qt::TextSingleLine,
                                       label.text())
                         .size()
                         .grownBy(margins);
        need(label, label.text(), needed, visibleSize(label));
    }

    void lookAt(const QAbstractButton& button) {
        const auto* tool = qobject_cast<const QToolButton*>(&button);
        if (!button.text().isEmpty() &&
            !(tool && tool->toolButtonStyle() == Qt::ToolButtonIconOnly))
            need(button, button.text(), button.minimumSizeHint(), visibleSize(button));
    }

    void lookAt(const QComboBox& picker) {
        QStyleOptionComboBox option;
        option.initFrom(&picker);
        option.editable = picker.isEditable();
        const QRect place = picker.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                           QStyle::SC_ComboBoxEditField, &picker);
        for (int index = 0; index < picker.count(); ++index)
            need(picker, picker.itemText(index),
                 {picker.fontMetrics().horizontalAdvance(picker.itemText(index)),
                  picker.fontMetrics().height()},
                 visibleSize(picker, place));
    }

    void lookAt(const QLineEdit& field) {
        if (!field.text().isEmpty())
            return; // what is typed scrolls
        QStyleOptionFrame option;
        option.initFrom(&field);
        option.lineWidth =
            field.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &field);
        constexpr int ownMargin = 2; // Qt's, at either side of the text
        const QRect place =
            field.style()
                ->subElementRect(QStyle::SE_LineEditContents, &option, &field)
                .marginsRemoved(field.textMargins() + QMargins(ownMargin, 0, ownMargin, 0));
        need(field, field.placeholderText(),
             {field.fontMetrics().horizontalAdvance(field.placeholderText()), 0},
             visibleSize(field, place));
    }

    void lookAt(const QTabBar& tabs) {
        for (int index = 0; index < tabs.count(); ++index)
            need(tabs, tabs.tabText(index),
                 {tabs.fontMetrics().horizontalAdvance(tabs.tabText(index)), 0},
                 visibleSize(tabs, tabs.tabRect(index)));
    }

    void lookAt(const QHeaderView& header) {
        const int margin =
            2 * header.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &header);
        for (int section = 0; section < header.count(); ++section) {
            const QString text =
                header.model()->headerData(section, header.orientation()).toString();
            if (header.orientation() == Qt::Horizontal && !header.isSectionHidden(section))
                need(header, text, {header.fontMetrics().horizontalAdvance(text) + margin, 0},
                     {header.sectionSize(section), header.height()});
        }
    }

    QWidget& m_window;
    QStringList m_faults;
};

/// Paints a window for nobody and keeps the texts that were cut with an ellipsis.
class CutTexts : public QPaintDevice {
public:
    explicit CutTexts(QWidget& window) : m_size(window.size()) { window.render(this); }
    ~CutTexts() override = default;

    [[nodiscard]] const QStringList& texts() const { return m_engine.cut; }
    [[nodiscard]] QPaintEngine* paintEngine() const override { return &m_engine; }

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
        case PdmWidth:
            return m_size.width();
        case PdmHeight:
            return m_size.height();
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(devicePixelRatioFScale());
        default:
            return 96; // dots per inch, and what nobody asks for
        }
    }

private:
    struct Engine final : QPaintEngine {
        Engine() : QPaintEngine(AllFeatures) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override {}
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawTextItem(const QPointF&, const QTextItem& item) override {
            // The ellipsis may be of another font than what it stands behind.
            if (item.text().contains(QChar(0x2026)))
                cut << previous + item.text();
            previous = item.text();
        }
        [[nodiscard]] Type type() const override { return User; }

        QStringList cut;
        QString previous;
    };

    QSize m_size;
    mutable Engine m_engine;
};

} // namespace harbrix
