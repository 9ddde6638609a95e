#include "ui/menu/StatusMenu.h"

#include <algorithm>

namespace harbrix {
namespace {

constexpr qsizetype longestTitle = 160;

bool isRow(const MenuEntry& entry) {
    return entry.kind == MenuEntry::Kind::row;
}

} // namespace

StatusMenu::StatusMenu(QWidget* parent) : QMenu(parent) {
    setObjectName(QStringLiteral("statusMenu"));
}

void StatusMenu::setContent(const std::vector<MenuEntry>& content) {
    if (m_commands.empty())
        appendTail({std::ranges::find_if_not(content, isRow), content.end()});
    for (const MenuEntry& entry : content)
        if (entry.kind == MenuEntry::Kind::command)
            m_commands.at(entry.command)->setText(hostTitle(entry.title));
    setRows(content);
}

void StatusMenu::appendTail(std::span<const MenuEntry> tail) {
    for (const MenuEntry& entry : tail) {
        QAction* action =
            entry.kind == MenuEntry::Kind::separator ? addSeparator() : appendCommand(entry);
        if (!m_end)
            m_end = action;
    }
}

QAction* StatusMenu::appendCommand(const MenuEntry& entry) {
    QAction* action = addAction(QString());
    if (!entry.keyEquivalent.isEmpty())
        action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + entry.keyEquivalent.toUpper()));
    connect(action, &QAction::triggered, this,
            [this, command = entry.command] { emit commandChosen(command); });
    m_commands[entry.command] = action;
    return action;
}

void StatusMenu::setRows(const std::vector<MenuEntry>& content) {
    const auto wanted = std::ranges::count_if(content, isRow);
    while (m_rows.size() > wanted)
        delete m_rows.takeLast();
    while (m_rows.size() < wanted) {
        auto* action = new QAction(this);
        action->setEnabled(false);
        insertAction(m_end, action);
        m_rows << action;
    }
    auto row = m_rows.begin();
    for (const MenuEntry& entry : content)
        if (isRow(entry))
            (*row++)->setText(hostTitle(entry.title));
}

QString hostTitle(const QString& title) {
    QString shown = title;
    std::ranges::replace_if(
        shown, [](QChar c) { return c.category() == QChar::Other_Control; }, QLatin1Char(' '));
    if (shown.size() > longestTitle) {
        qsizetype end = longestTitle - 1;
        if (shown.at(end - 1).isHighSurrogate())
            --end;
        shown = shown.left(end) + QChar(0x2026);
    }
    shown.replace(QLatin1Char('_'), QLatin1String("__"));
    // Of the ampersands Qt turns the first into a mark for the access key and leaves the others.
    return shown.contains(QLatin1Char('&')) ? QLatin1Char('&') + shown : shown;
}

} // namespace harbrix
