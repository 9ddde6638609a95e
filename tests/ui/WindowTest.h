#pragma once

#include "support/UiWorld.h"
#include "support/WaitUntil.h"
#include "ui/WindowScenes.h"
#include "ui/main/MainWindowView.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

namespace harbrix {

/// The main window over a machine that is played, with what a user does to it.
class WindowTest : public testing::Test {
protected:
    WindowTest() {
        world.language.setSelectedLanguage(AppLanguage::zhHans);
        world.automation.goOnline("192.168.1.5");
        settle();
    }

    void settle() {
        world.automation.scheduler.settle();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        world.automation.scheduler.settle();
    }
    MainWindowView& open() {
        scenes.open("main");
        settle();
        return *qobject_cast<MainWindowView*>(scenes.window("main"));
    }
    template <typename Widget = QWidget>
    Widget& find(const char* name) {
        auto* widget = scenes.window("main")->findChild<Widget*>(name);
        if (!widget)
            qFatal("no %s", name);
        return *widget;
    }
    [[nodiscard]] bool exists(const char* name) const {
        return scenes.window("main")->findChild<QWidget*>(name) != nullptr;
    }
    void click(const char* name) {
        QTest::mouseClick(&find(name), Qt::LeftButton);
        settle();
    }
    void type(const char* name, const QString& text) {
        auto& field = find<QLineEdit>(name);
        field.setFocus();
        field.selectAll();
        // As an input method does it: key events reach no further than ASCII.
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(&field, &event);
        settle();
    }
    void pickIn(const char* name, int index) {
        find<QComboBox>(name).setCurrentIndex(index);
        settle();
    }
    /// A password is stored on a worker.
    [[nodiscard]] bool waitForSave() {
        return waitUntil([this] {
            settle();
            auto idle = world.saver.whenIdle();
            return idle.await_ready();
        });
    }
    [[nodiscard]] const NASConfig& onlyRecord() const {
        return world.automation.store.configs().at(0);
    }

    UiWorld world;
    WindowScenes scenes{world.environment};
};

} // namespace harbrix
