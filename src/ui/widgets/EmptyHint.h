#pragma once

#include "ui/widgets/TextLabel.h"

#include <QWidget>

namespace harbrix {

/// What stands where there is nothing to show: a symbol, and under it one or two texts.
class EmptyHint : public QWidget {
    Q_OBJECT

public:
    struct Look {
        QString symbol;
        int symbolSize;
        TextRole title;
    };

    explicit EmptyHint(const Look& look, QWidget* parent = nullptr);

    void setTexts(const QString& title, const QString& detail = {});

private:
    TextLabel* m_title;
    TextLabel* m_detail;
};

} // namespace harbrix
