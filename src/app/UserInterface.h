#pragma once

#include "automation/ShareSaver.h"
#include "ui/Environment.h"
#include "ui/WindowScenes.h"
#include "ui/menu/MenuBarController.h"
#include "ui/widgets/Theme.h"

#include <QTranslator>

class QApplication;

namespace harbrix {

class KeychainManager;
class SleepMonitor;

/// What is made only where there is a display: the windows and the status item. Main thread.
class UserInterface : public QObject {
    Q_OBJECT

public:
    UserInterface(QApplication& application, const Environment& environment, Scheduler& scheduler,
                  SleepMonitor& sleepMonitor);

    /// The status item, before any service reports; part of the launch sequence.
    void start();
    /// The windows that are open come to the front, the main window in any case.
    void activate();
    void openMainWindow();

signals:
    void quitRequested();

private:
    void applicationDidBecomeActive();
    void useLanguage(const QLocale& locale);

    QApplication& m_application;
    SleepMonitor& m_sleepMonitor;
    Theme m_theme;
    QTranslator m_textsOfQt;
    WindowScenes m_scenes;
    MenuBarController m_menuBarController;
};

} // namespace harbrix
