#pragma once

#include "automation/ShareOverview.h"
#include "ui/widgets/AdaptiveGrid.h"
#include "ui/widgets/TextLabel.h"

#include <QPushButton>
#include <QScrollArea>

namespace harbrix {

/// A mounted share with the way into it.
class MountedFolderCard : public QWidget {
    Q_OBJECT

public:
    explicit MountedFolderCard(const MountedShare& share, QWidget* parent = nullptr);

    [[nodiscard]] const MountedShare& share() const { return m_share; }
    void setShare(const MountedShare& share);
    void retranslate();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return {120, sizeHint().height()}; }

signals:
    void openRequested(const QUrl& mountPoint);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    struct Places;
    [[nodiscard]] Places places() const;
    void arrange();

    MountedShare m_share;
    QPushButton* m_open;
    int m_height = 0; ///< measured once: hundreds of cards are laid out with each one that comes
};

/// One card for each mounted share.
class MountedFoldersView : public QScrollArea {
    Q_OBJECT

public:
    explicit MountedFoldersView(QWidget* parent = nullptr);

    void setShares(const std::vector<MountedShare>& shares);
    void retranslate();

signals:
    void openRequested(const QUrl& mountPoint);

private:
    void putCard(int index, const MountedShare& share);

    TextLabel* m_title;
    QWidget* m_content;
    AdaptiveGrid* m_grid;
    std::vector<MountedFolderCard*> m_cards;
};

} // namespace harbrix
