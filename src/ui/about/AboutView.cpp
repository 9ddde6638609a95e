#include "ui/about/AboutView.h"

#include "services/LanguageManager.h"
#include "services/Text.h"
#include "ui/widgets/AccessibleRole.h"
#include "ui/widgets/GroupedForm.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/TextLabel.h"

#include <QDate>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace harbrix {
namespace {

constexpr int markSize = 64;
constexpr double nameScale = 1.75; ///< of the body size

/// Its blanks at either side give way where the labels are long.
class Link final : public QPushButton {
public:
    [[nodiscard]] QSize minimumSizeHint() const override {
        return QPushButton::minimumSizeHint() - QSize(2 * spacing::small, 0);
    }
};

QPushButton* makeLink(const char* name, const char* symbol, const QUrl& target,
                      const Environment& environment) {
    auto* link = new Link;
    link->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    link->setObjectName(QString::fromLatin1(name));
    link->setIcon(symbolIcon(QString::fromLatin1(symbol), Tint::blue));
    link->setFlat(true);
    link->setCursor(Qt::PointingHandCursor);
    link->setFont(fontFor(TextRole::callout));
    QObject::connect(link, &QPushButton::clicked, link,
                     [open = environment.openUrl, target] { open(target); });
    return link;
}

} // namespace

AboutInformation AboutInformation::ofThisBuild() {
    const auto build = QStringLiteral(HARBRIX_BUILD);
    return {QStringLiteral(HARBRIX_VERSION), build.isEmpty() ? QStringLiteral("1") : build,
            QUrl(QStringLiteral(HARBRIX_HOME_PAGE)), QUrl(QStringLiteral(HARBRIX_FEEDBACK_PAGE)),
            QUrl(QStringLiteral(HARBRIX_DOCUMENTATION_PAGE))};
}

AboutView::AboutView(const Environment& environment, const AboutInformation& information,
                     QWidget* parent)
    : QWidget(parent), m_homePage(makeLink("homePage", "globe", information.homePage, environment)),
      m_feedback(
          makeLink("feedback", "bubble.left.and.bubble.right", information.feedback, environment)),
      m_documentation(
          makeLink("documentation", "doc.text", information.documentation, environment)) {
    setObjectName(QStringLiteral("about"));
    setFixedSize(size);
    setAccessibleRole(*this, QAccessible::Dialog);

    auto* name = new TextLabel(TextRole::largeTitle, Tint::primary);
    name->setText(QStringLiteral("Harbrix"));
    QFont nameFont = fontFor(TextRole::headline);
    nameFont.setPointSizeF(nameFont.pointSizeF() * nameScale);
    name->setFont(nameFont);
    auto* version = new TextLabel(TextRole::callout, Tint::secondary);
    version->setObjectName(QStringLiteral("version"));
    version->setText(QStringLiteral("Version %1 (%2)").arg(information.version, information.build));
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* notice = new TextLabel(TextRole::caption, Tint::secondary);
    notice->setObjectName(QStringLiteral("notice"));
    notice->setText(QStringLiteral("© %1 Harbrix contributors").arg(QDate::currentDate().year()));

    auto* links = new QHBoxLayout;
    links->setSpacing(0); // each has 12 at either side of its label
    links->addStretch();
    for (QPushButton* link : {m_homePage, m_feedback, m_documentation})
        links->addWidget(link);
    links->addStretch();

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(spacing::small, spacing::huge, spacing::small, spacing::regular);
    column->setSpacing(0);
    column->addWidget(new SymbolView(QStringLiteral("externaldrive.connected.to.line.below"),
                                     markSize, Tint::blue),
                      0, Qt::AlignHCenter);
    column->addSpacing(spacing::regular);
    for (TextLabel* label : {name, version, notice}) {
        label->setAlignment(Qt::AlignCenter);
        column->addWidget(label);
        column->addSpacing(spacing::small);
    }
    column->addStretch();
    auto* divider = new Divider;
    divider->setContentsMargins(2 * spacing::large, 0, 2 * spacing::large, 0);
    column->addWidget(divider);
    column->addSpacing(spacing::medium);
    column->addLayout(links);

    connect(&environment.languageManager, &LanguageManager::localeChanged, this,
            &AboutView::retranslate);
    retranslate();
}

void AboutView::retranslate() {
    m_homePage->setText(literalText("官网"));
    m_feedback->setText(literalText("反馈"));
    m_documentation->setText(literalText("文档"));
}

QWidget* makeAboutWindow(const Environment& environment) {
    auto* window = new AboutView(environment, AboutInformation::ofThisBuild());
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setWindowFlag(Qt::WindowMaximizeButtonHint, false);
    const auto setTitle = [window] { window->setWindowTitle(text("window.about.title")); };
    QObject::connect(&environment.languageManager, &LanguageManager::localeChanged, window,
                     setTitle);
    setTitle();
    QRect place(QPoint(), AboutView::size);
    place.moveCenter(window->screen()->availableGeometry().center());
    window->move(place.topLeft());
    return window;
}

} // namespace harbrix
