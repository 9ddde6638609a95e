#pragma once

#include "ui/widgets/Panel.h"

namespace harbrix {

class TextLabel;

/// A strip across a window with what the user has to know as long as it holds; hidden while there
/// is nothing.
class NoticeBar : public Panel {
    Q_OBJECT

public:
    explicit NoticeBar(QWidget* parent = nullptr);

    /// An empty text hides the bar.
    void setText(const QString& text);
    [[nodiscard]] QString text() const;

private:
    TextLabel* m_text;
};

} // namespace harbrix
