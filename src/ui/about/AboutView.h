#pragma once

#include "ui/Environment.h"

#include <QWidget>

class QPushButton;

namespace harbrix {

/// What the about window tells of this build.
struct AboutInformation {
    QString version;
    QString build;
    QUrl homePage;
    QUrl feedback;
    QUrl documentation;

    [[nodiscard]] static AboutInformation ofThisBuild();
};

/// The content of every about window.
class AboutView : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize size{360, 280};

    AboutView(const Environment& environment, const AboutInformation& information,
              QWidget* parent = nullptr);

private:
    void retranslate();

    QPushButton* m_homePage;
    QPushButton* m_feedback;
    QPushButton* m_documentation;
};

/// A new about window, titled, of fixed size; it deletes itself when it is closed.
[[nodiscard]] QWidget* makeAboutWindow(const Environment& environment);

} // namespace harbrix
