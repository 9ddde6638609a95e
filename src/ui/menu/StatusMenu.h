#pragma once

#include "ui/menu/MenuContent.h"

#include <QMenu>

#include <map>
#include <span>

namespace harbrix {

/// The menu of the status item as the desktop shows it. What a host shows and what is here may
/// differ for a moment, so the commands that are always there keep their actions for good: a click
/// on one always arrives. Those that come and go never change what they are about.
class StatusMenu : public QMenu {
    Q_OBJECT

public:
    /// Who draws it: each gives other characters a meaning of their own.
    enum class ShownBy { Host, Program };

    explicit StatusMenu(ShownBy shownBy = ShownBy::Host, QWidget* parent = nullptr);

    void setContent(const std::vector<MenuEntry>& content);

signals:
    void commandChosen(const harbrix::MenuEntry& entry);

private:
    void appendTail(std::span<const MenuEntry> tail);
    void setHead(std::span<const MenuEntry> head);
    QAction* makeAction(const MenuEntry& entry);
    [[nodiscard]] QString titleOf(const MenuEntry& entry) const;

    ShownBy m_shownBy;
    std::vector<MenuEntry> m_headEntries;
    QList<QAction*> m_head;
    QAction* m_end = nullptr; ///< what follows the head
    std::map<MenuCommand, QAction*> m_commands;
};

/// A title as a host of the tray shows it unchanged: without the special meaning that underscores
/// and ampersands have there, on one line, and of bounded length.
[[nodiscard]] QString hostTitle(const QString& title);
/// The same for a menu that Qt draws.
[[nodiscard]] QString ownTitle(const QString& title);

} // namespace harbrix
