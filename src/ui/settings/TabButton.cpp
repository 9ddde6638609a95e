#include "ui/settings/TabButton.h"

#include "ui/widgets/SymbolIcon.h"

#include <QAccessibleWidget>

namespace harbrix {
namespace {

constexpr QSize tabSymbolSize(22, 22);
constexpr int narrowestTab = 76;

class AccessibleTab final : public QAccessibleWidget {
public:
    explicit AccessibleTab(TabButton& tab)
        : QAccessibleWidget(&tab, QAccessible::PageTab), m_tab(tab) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? m_tab.text() : QAccessibleWidget::text(kind);
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = m_tab.isChecked();
        return state;
    }
    [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction())
            m_tab.click();
    }

private:
    TabButton& m_tab;
};

QAccessibleInterface* tabInterfaceOf(const QString&, QObject* object) {
    auto* tab = qobject_cast<TabButton*>(object);
    return tab ? new AccessibleTab(*tab) : nullptr;
}

} // namespace

TabButton::TabButton(const QString& symbol, QWidget* parent) : QToolButton(parent) {
    [[maybe_unused]] static const bool installed =
        (QAccessible::installFactory(tabInterfaceOf), true);
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    setIconSize(tabSymbolSize);
    setFont(fontFor(TextRole::caption));
    setMinimumWidth(narrowestTab);
    setAutoRaise(true);
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    const auto tint = [this, symbol](bool isShown) {
        setIcon(symbolIcon(symbol, isShown ? Tint::blue : Tint::secondary));
    };
    connect(this, &QToolButton::toggled, this, tint);
    tint(false);
}

} // namespace harbrix
