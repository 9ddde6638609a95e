#include "ui/browser/ConflictResolutionSheet.h"

#include "files/FileUrl.h"
#include "services/Text.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/TextLabel.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace harbrix {
namespace {

constexpr int sheetWidth = 360;
constexpr int warningSize = 32;

} // namespace

ConflictResolutionSheet::ConflictResolutionSheet(const FileConflict& conflict, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("conflictSheet"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(text("browser.fileExists"));

    auto* title = new TextLabel(TextRole::headline, Tint::primary);
    title->setText(text("browser.fileExists"));
    auto* message = new TextLabel(TextRole::callout, Tint::secondary);
    message->setObjectName(QStringLiteral("conflictMessage"));
    message->setText(
        formatted("browser.fileExistsMessage", {lastPathComponent(conflict.destination)}));
    for (TextLabel* label : {title, message})
        label->setAlignment(Qt::AlignCenter);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(spacing::medium);
    buttons->addStretch();
    buttons->addWidget(makeButton("skip", text("browser.skip"), ConflictResolution::skip));
    auto* proposed = makeButton("rename", text("browser.rename"), ConflictResolution::rename);
    buttons->addWidget(proposed);
    if (!conflict.isFolderInTheWay) {
        proposed =
            makeButton("overwrite", text("browser.overwrite"), ConflictResolution::overwrite);
        buttons->addWidget(proposed);
    }
    buttons->addStretch();
    proposed->setDefault(true);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(spacing::huge, spacing::huge, spacing::huge, spacing::huge);
    column->setSpacing(spacing::regular);
    column->addWidget(
        new SymbolView(QStringLiteral("exclamationmark.triangle"), warningSize, Tint::orange), 0,
        Qt::AlignHCenter);
    column->addWidget(title);
    column->addWidget(message);
    column->addLayout(buttons);
    // In some languages the buttons need more.
    setFixedWidth(std::max(sheetWidth, minimumSizeHint().width()));
    connect(this, &QDialog::finished, this, [this] { emit resolved(m_resolution); });
}

QPushButton* ConflictResolutionSheet::makeButton(const char* name, const QString& title,
                                                 ConflictResolution resolution) {
    auto* button = new QPushButton(title);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, resolution] {
        m_resolution = resolution;
        accept();
    });
    return button;
}

} // namespace harbrix
