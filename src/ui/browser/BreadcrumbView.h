#pragma once

#include <QScrollArea>
#include <QUrl>

class QHBoxLayout;

namespace harbrix {

struct Crumb;

/// The path bar: the directories from the share down to the one on screen, each a button. What does
/// not fit is scrolled, the last crumb being in sight.
class BreadcrumbView : public QScrollArea {
    Q_OBJECT

public:
    explicit BreadcrumbView(QWidget* parent = nullptr);

    void setPath(const QUrl& currentPath, const QUrl& mountPoint, const QString& nasName);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    void navigateRequested(const QUrl& url);

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void addCrumb(const Crumb& crumb, bool isFirst, bool isLast);

    QWidget* m_bar;
    QHBoxLayout* m_crumbs;
};

} // namespace harbrix
