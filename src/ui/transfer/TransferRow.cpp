#include "ui/transfer/TransferRow.h"

#include "files/FileUrl.h"
#include "services/Text.h"
#include "ui/widgets/SymbolIcon.h"
#include "ui/widgets/TextLabel.h"

#include <QFontMetrics>
#include <QKeySequence>
#include <QPainter>
#include <QStyle>
#include <QToolButton>

namespace harbrix {
namespace {

constexpr int sidePadding = spacing::medium;
constexpr int rowEdge = 6;
constexpr int directionSize = 18;
constexpr int barHeight = 4;
constexpr int buttonSize = 24;
constexpr int buttonIconSize = 12;
constexpr int narrowestStatus = 76;
constexpr int longestError = 200;

struct ButtonLook {
    const char* name;
    const char* symbol;
    Tint tint;
};

ButtonLook lookOf(TransferAction action, TransferStatus status) {
    switch (action) {
    case TransferAction::pause:
        return {"pauseTransfer", "pause.fill", Tint::primary};
    case TransferAction::resume:
        return {"resumeTransfer", "play.fill", Tint::primary};
    case TransferAction::retry:
        return {"retryTransfer", "arrow.clockwise", Tint::primary};
    case TransferAction::cancel:
        break;
    }
    return {"cancelTransfer", "xmark",
            status == TransferStatus::failed ? Tint::secondary : Tint::primary};
}

/// One width for all rows, so that their bars end alike.
int statusWidth() {
    const QFontMetrics metrics(fontFor(TextRole::caption));
    int width = narrowestStatus;
    for (const auto status :
         {TransferStatus::pending, TransferStatus::paused, TransferStatus::completed,
          TransferStatus::failed, TransferStatus::cancelled}) {
        TransferTask task;
        task.status = status;
        width = std::max(width, metrics.horizontalAdvance(statusText(task)) + 1);
    }
    return width;
}

/// Where there is no word of ours for it, the name of the key that does the same.
QString titleOf(TransferAction action) {
    const auto keyName = [](Qt::Key key) {
        return QKeySequence(key).toString(QKeySequence::NativeText);
    };
    switch (action) {
    case TransferAction::pause:
        return keyName(Qt::Key_MediaPause);
    case TransferAction::resume:
        return keyName(Qt::Key_MediaPlay);
    case TransferAction::retry:
        return text("notification.action.retry");
    case TransferAction::cancel:
        return text("common.cancel");
    }
    return {};
}

} // namespace

Tint tintOf(TransferStatus status) {
    switch (status) {
    case TransferStatus::running:
        return Tint::blue;
    case TransferStatus::paused:
        return Tint::orange;
    case TransferStatus::completed:
        return Tint::green;
    case TransferStatus::failed:
        return Tint::red;
    case TransferStatus::pending:
    case TransferStatus::cancelled:
        break;
    }
    return Tint::secondary;
}

/// Laid out from left to right.
struct TransferRow::Places {
    QRect symbol;
    QRect name;
    QRect bar;
    QRect details;
    QRect error;
    QRect status;
    QRect first;
    QRect second;
};

TransferRow::Places TransferRow::places() const {
    Places at;
    const int nameHeight = lineHeight(TextRole::callout);
    const int smallHeight = lineHeight(TextRole::caption2);
    const int block = nameHeight + 2 * spacing::hair + barHeight + smallHeight + 1;
    const int middle = rowEdge + block / 2;
    at.symbol = {sidePadding, middle - directionSize / 2, directionSize, directionSize};
    int right = width() - sidePadding;
    at.second = {right - buttonSize, middle - buttonSize / 2, buttonSize, buttonSize};
    at.first = at.second.translated(-buttonSize - spacing::hair, 0);
    right = at.first.left() - spacing::small;
    const int statusPlace = statusWidth();
    at.status = {right - statusPlace, middle - nameHeight / 2, statusPlace, nameHeight};
    const int x = at.symbol.right() + 1 + spacing::medium;
    const int inner = at.status.left() - spacing::medium - x;
    int y = rowEdge;
    at.name = {x, y, inner, nameHeight};
    y += nameHeight + spacing::hair;
    at.bar = {x, y, inner, barHeight};
    y += barHeight + spacing::hair + 1;
    at.details = {x, y, inner, smallHeight};
    y += smallHeight;
    at.error = {x, y, width() - sidePadding - x, smallHeight};
    return at;
}

int TransferRow::heightFor(const TransferTask& task) {
    const int lines = task.errorMessage ? 2 : 1;
    return 2 * rowEdge + lineHeight(TextRole::callout) + 2 * spacing::hair + barHeight + 1 +
           lines * lineHeight(TextRole::caption2);
}

TransferRow::TransferRow(Actions actions, QWidget* parent)
    : QWidget(parent), m_actions(std::move(actions)), m_first(new QToolButton(this)),
      m_second(new QToolButton(this)) {
    setObjectName(QStringLiteral("transferRow"));
    int place = 0;
    for (QToolButton* button : {m_first, m_second}) {
        button->setAutoRaise(true);
        button->setIconSize({buttonIconSize, buttonIconSize});
        button->hide();
        connect(button, &QToolButton::clicked, this, [this, place] {
            const auto actions = availableActions(m_task.status);
            if (static_cast<std::size_t>(place) < actions.size())
                perform(actions[static_cast<std::size_t>(place)]);
        });
        ++place;
    }
}

void TransferRow::perform(TransferAction action) const {
    switch (action) {
    case TransferAction::pause:
        return m_actions.onPause();
    case TransferAction::resume:
        return m_actions.onResume();
    case TransferAction::retry:
        return m_actions.onRetry();
    case TransferAction::cancel:
        return m_actions.onCancel();
    }
}

void TransferRow::setTask(const TransferTask& task, const QDateTime& now, const QLocale& locale) {
    m_task = task;
    m_name = lastPathComponent(task.sourceURL);
    m_status = statusText(task);
    QStringList details{sizesText(task, locale)};
    if (task.status == TransferStatus::running) {
        details << task.speedText(now, locale);
        if (const auto eta = etaText(task, now, locale))
            details << *eta;
    }
    m_details = details.join(QStringLiteral("   "));
    setAccessibleName(m_name);
    setAccessibleDescription(m_status + QStringLiteral(", ") + m_details);
    setToolTip(plainToolTip(task.errorMessage ? m_name + u'\n' + *task.errorMessage : m_name));
    showButtons();
    update();
}

void TransferRow::showButtons() {
    if (m_buttonsAreFor == m_task.status)
        return;
    m_buttonsAreFor = m_task.status;
    const auto actions = availableActions(m_task.status);
    std::size_t place = 0;
    for (QToolButton* button : {m_first, m_second}) {
        button->setVisible(place < actions.size());
        if (place < actions.size()) {
            const ButtonLook look = lookOf(actions[place], m_task.status);
            button->setObjectName(QString::fromLatin1(look.name));
            button->setIcon(symbolIcon(QString::fromLatin1(look.symbol), look.tint));
            const QString title = titleOf(actions[place]);
            button->setToolTip(title);
            button->setAccessibleName(title);
        } else {
            button->setObjectName({});
        }
        ++place;
    }
}

void TransferRow::resizeEvent(QResizeEvent*) {
    const Places at = places();
    m_first->setGeometry(QStyle::visualRect(layoutDirection(), rect(), at.first));
    m_second->setGeometry(QStyle::visualRect(layoutDirection(), rect(), at.second));
}

void TransferRow::paintEvent(QPaintEvent*) {
    const Places at = places();
    QPainter painter(this);
    const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
    const auto mirrored = [this](const QRect& place) {
        return QStyle::visualRect(layoutDirection(), rect(), place);
    };
    const auto drawText = [&](const QString& content, const QRect& place, TextRole role, Tint tint,
                              Qt::TextElideMode elide, bool trailing = false) {
        painter.setFont(fontFor(role));
        painter.setPen(color(tint, palette()));
        const auto side = rightToLeft != trailing ? Qt::AlignRight : Qt::AlignLeft;
        painter.drawText(mirrored(place),
                         int(side | Qt::AlignVCenter | Qt::AlignAbsolute) | Qt::TextSingleLine,
                         painter.fontMetrics().elidedText(content, elide, place.width()));
    };
    const char* symbol =
        m_task.direction == TransferDirection::upload ? "arrow.up.circle" : "arrow.down.circle";
    painter.drawPixmap(mirrored(at.symbol),
                       symbolPixmap(QString::fromLatin1(symbol), directionSize,
                                    color(tintOf(m_task.status), palette()), devicePixelRatioF()));
    drawText(m_name, at.name, TextRole::callout, Tint::primary, Qt::ElideMiddle);
    drawText(m_details, at.details, TextRole::caption2, Tint::secondary, Qt::ElideRight);
    drawText(m_status, at.status, TextRole::caption, Tint::secondary, Qt::ElideRight, true);
    if (m_task.errorMessage)
        drawText(m_task.errorMessage->left(longestError), at.error, TextRole::caption2,
                 Tint::secondary, Qt::ElideRight);

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(Tint::separator, palette()));
    painter.drawRoundedRect(mirrored(at.bar), barHeight / 2.0, barHeight / 2.0);
    QRect done = at.bar;
    done.setWidth(int(at.bar.width() * transferredFraction(m_task)));
    if (done.width() > 0) {
        painter.setBrush(color(tintOf(m_task.status), palette()));
        painter.drawRoundedRect(mirrored(done), barHeight / 2.0, barHeight / 2.0);
    }
}

} // namespace harbrix
