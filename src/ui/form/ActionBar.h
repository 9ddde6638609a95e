#pragma once

#include "automation/ShareOverview.h"
#include "ui/form/TestResultLine.h"

#include <QWidget>

class QPushButton;

namespace harbrix {

/// The row of actions under the form.
class ActionBar : public QWidget {
    Q_OBJECT

public:
    explicit ActionBar(QWidget* parent = nullptr);

    void retranslate();
    void setTestResult(const std::optional<TestConnectionResult>& result);
    /// Without an address there is nothing that a result could be about.
    void setResultVisible(bool visible);
    /// Nothing for a form without a record, which cannot be mounted.
    void setMountControl(const std::optional<MountControl>& control);

signals:
    void testRequested();
    void openRequested();
    void unmountRequested();
    void mountRequested();
    void closeRequested();
    void saveRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showResult();

    bool m_resultIsVisible = false;
    QPushButton* m_test;
    TestResultLine* m_result;
    QWidget* m_busy;
    TextLabel* m_busyText;
    QPushButton* m_open;
    QPushButton* m_unmount;
    QPushButton* m_mount;
    QPushButton* m_close;
    QPushButton* m_save;
};

} // namespace harbrix
