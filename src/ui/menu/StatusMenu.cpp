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
    for (const MenuEntry& entry : content) {
        if (isRow(entry))
            continue;
        if (entry.kind == MenuEntry::Kind::separator) {
            if (m_commands.empty() || !m_end)
                m_end = m_end ? m_end : addSeparator();
            continue;
        }
        if (const auto known = m_commands.find(entry.command); known != m_commands.end())
            known->second->setText(hostTitle(entry.title));
    }
    if (m_commands.empty()) {
        bool first = true;
        for (const MenuEntry& entry : content) {
            if (entry.kind == MenuEntry::Kind::command)
                appendCommand(entry);
            else if (entry.kind == MenuEntry::Kind::separator && !std::exchange(first, false))
                addSeparator();
        }
    }
    setRows(content);
}

QAction* StatusMenu::appendCommand(const MenuEntry& entry) {
    QAction* action = addAction(hostTitle(entry.title));
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
