#pragma once

#include "ui/widgets/Theme.h"

#include <QWidget>

namespace harbrix {

/// A plain surface in a colour of the theme with one widget on it.
class Panel : public QWidget {
    Q_OBJECT

public:
    explicit Panel(Tint tint, QWidget* parent = nullptr);

    void setContent(QWidget* content);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Tint m_tint;
};

} // namespace harbrix
