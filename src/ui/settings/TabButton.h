#pragma once

#include <QToolButton>

namespace harbrix {

/// The tab of a page: a symbol above a title, tinted while its page is shown. To a screen reader
/// it is a page tab.
class TabButton : public QToolButton {
    Q_OBJECT

public:
    explicit TabButton(const QString& symbol, QWidget* parent = nullptr);
};

} // namespace harbrix
