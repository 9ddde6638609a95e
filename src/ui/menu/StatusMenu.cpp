#include "ui/menu/StatusMenu.h"

#include <algorithm>

namespace harbrix {
namespace {

constexpr int widestTitle = 100; // columns

/// Han, kana, Hangul and emoji take two columns, roughly.
int columnsOf(QChar c) {
    if (c.isLowSurrogate())
        return 0;
    return c.unicode() >= 0x1100 ? 2 : 1;
}

/// On one line, cut in the middle: a row begins with a name and ends with what is wrong.
QString bounded(QString title) {
    std::ranges::replace_if(
        title, [](QChar c) { return c.category() == QChar::Other_Control; }, QLatin1Char(' '));
    const auto fits = [](auto begin, auto end, int columns) {
        auto at = begin;
        while (at != end && columns >= columnsOf(*at))
            columns -= columnsOf(*at++);
        return at;
    };
    if (fits(title.cbegin(), title.cend(), widestTitle) == title.cend())
        return title;
    auto head = fits(title.cbegin(), title.cend(), widestTitle / 2) - title.cbegin();
    auto tail = fits(title.crbegin(), title.crend(), widestTitle / 2 - 1) - title.crbegin();
    if (title.at(head - 1).isHighSurrogate())
        --head;
    if (title.at(title.size() - tail).isLowSurrogate())
        --tail;
    return title.first(head) + QChar(0x2026) + title.last(tail);
}

/// Whether an action for the one can stand for the other: it may be told anew, but not be about
/// something else.
bool isSameEntry(const MenuEntry& a, const MenuEntry& b) {
    return a.kind == b.kind && a.command == b.command && a.target == b.target;
}

} // namespace

StatusMenu::StatusMenu(ShownBy shownBy, QWidget* parent) : QMenu(parent), m_shownBy(shownBy) {
    setObjectName(QStringLiteral("statusMenu"));
    setToolTipsVisible(true);
}

void StatusMenu::setContent(const std::vector<MenuEntry>& content) {
    const auto tail = std::ranges::find(content, false, &MenuEntry::comesAndGoes);
    if (m_commands.empty())
        appendTail({tail, content.end()});
    for (const MenuEntry& entry : std::span(tail, content.end()))
        if (entry.kind == MenuEntry::Kind::command)
            m_commands.at(entry.command)->setText(titleOf(entry));
    setHead({content.begin(), tail});
}

void StatusMenu::appendTail(std::span<const MenuEntry> tail) {
    for (const MenuEntry& entry : tail) {
        QAction* action = makeAction(entry);
        addAction(action);
        if (entry.kind == MenuEntry::Kind::command)
            m_commands[entry.command] = action;
        if (!m_end)
            m_end = action;
    }
}

QAction* StatusMenu::makeAction(const MenuEntry& entry) {
    auto* action = new QAction(this);
    action->setSeparator(entry.kind == MenuEntry::Kind::separator);
    action->setEnabled(entry.kind != MenuEntry::Kind::row);
    if (!entry.keyEquivalent.isEmpty())
        action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + entry.keyEquivalent.toUpper()));
    if (entry.kind == MenuEntry::Kind::command)
        connect(action, &QAction::triggered, this, [this, entry] { emit commandChosen(entry); });
    return action;
}

void StatusMenu::setHead(std::span<const MenuEntry> head) {
    const auto firstOther = std::ranges::mismatch(m_headEntries, head, isSameEntry).in1;
    const auto kept = firstOther - m_headEntries.begin();
    while (m_head.size() > kept)
        delete m_head.takeLast();
    for (const MenuEntry& entry : head.subspan(std::size_t(kept))) {
        m_head << makeAction(entry);
        insertAction(m_end, m_head.constLast());
    }
    m_headEntries.assign(head.begin(), head.end());
    auto action = m_head.begin();
    for (const MenuEntry& entry : head) {
        (*action)->setText(titleOf(entry));
        (*action++)->setToolTip(entry.toolTip);
    }
}

QString StatusMenu::titleOf(const MenuEntry& entry) const {
    return m_shownBy == ShownBy::Host ? hostTitle(entry.title) : ownTitle(entry.title);
}

QString ownTitle(const QString& title) {
    return bounded(title).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString hostTitle(const QString& title) {
    QString shown = bounded(title);
    shown.replace(QLatin1Char('_'), QLatin1String("__"));
    // Of the ampersands Qt turns the first into a mark for the access key and leaves the others.
    return shown.contains(QLatin1Char('&')) ? QLatin1Char('&') + shown : shown;
}

} // namespace harbrix
