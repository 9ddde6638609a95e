#include "base/ByteCount.h"
#include "base/Worker.h"
#include "services/LogLine.h"
#include "support/UiWorld.h"
#include "support/WaitUntil.h"
#include "ui/WindowScenes.h"
#include "ui/settings/SettingsView.h"
#include "ui/widgets/Stepper.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QSlider>
#include <QStackedWidget>
#include <QTest>

namespace harbrix {
namespace {

/// The settings window, in the base language unless a test says otherwise.
class SettingsTest : public testing::Test {
protected:
    SettingsTest() { world.language.setSelectedLanguage(AppLanguage::zhHans); }

    SettingsView& open() {
        scenes.open("settings");
        settle();
        return *qobject_cast<SettingsView*>(scenes.window("settings"));
    }
    void settle() {
        world.automation.scheduler.settle();
        QCoreApplication::processEvents();
    }
    [[nodiscard]] bool settleUntil(const std::function<bool()>& condition) {
        return waitUntil([&] {
            world.automation.scheduler.advance(Seconds(0));
            return condition();
        });
    }
    template <typename Widget>
    Widget& find(const QString& name) {
        auto* widget = scenes.window("settings")->findChild<Widget*>(name);
        if (!widget)
            qFatal("no %s", qPrintable(name));
        return *widget;
    }
    [[nodiscard]] bool exists(const QString& name) const {
        return scenes.window("settings")->findChild<QWidget*>(name) != nullptr;
    }
    [[nodiscard]] QString label(const QString& name) { return find<QLabel>(name).text(); }
    void click(const QString& name) {
        find<QAbstractButton>(name).click();
        settle();
    }
    void pick(const QString& name, int index) {
        auto& picker = find<QComboBox>(name);
        picker.setCurrentIndex(index);
        emit picker.activated(index); // as when it is picked from the list
        settle();
    }

    UiWorld world;
    UserDefaults& defaults = world.automation.defaults;
    WindowScenes scenes{world.environment};
};

TEST_F(SettingsTest, HasItsSixPagesInOrderAndFollowsTheLanguage) {
    open();
    const QStringList names{"settings.tab.language",      "settings.tab.launch",
                            "settings.tab.notifications", "settings.tab.cache",
                            "settings.tab.advanced",      "settings.tab.logging"};
    QStringList titles;
    int place = -1;
    for (const QString& name : names) {
        auto& tab = find<QAbstractButton>(name);
        titles << tab.text();
        EXPECT_GT(tab.x(), std::exchange(place, tab.x())) << name.toStdString();
    }
    EXPECT_EQ(titles, QStringList({"语言", "启动", "通知", "缓存", "高级", "日志"}));
    EXPECT_EQ(scenes.window("settings")->windowTitle(), "设置");

    const auto& languages = find<QComboBox>("HarbrixSelectedLanguage");
    EXPECT_EQ(languages.count(), 10);
    EXPECT_EQ(languages.currentText(), "简体中文");
    pick("HarbrixSelectedLanguage", languages.findText("English"));
    EXPECT_EQ(defaults.text("HarbrixSelectedLanguage"), "en");
    EXPECT_EQ(find<QAbstractButton>(names[1]).text(), "Startup");
    EXPECT_EQ(scenes.window("settings")->windowTitle(), "Settings");
    EXPECT_EQ(languages.itemText(0), displayName(AppLanguage::system));
}

TEST_F(SettingsTest, TabsAreTabsToAScreenReaderAndMoveWithTheKeys) {
    open();
    auto& first = find<QAbstractButton>("settings.tab.language");
    auto& second = find<QAbstractButton>("settings.tab.launch");
    QAccessibleInterface* tab = QAccessible::queryAccessibleInterface(&second);
    ASSERT_TRUE(tab);
    EXPECT_EQ(tab->role(), QAccessible::PageTab);
    EXPECT_EQ(tab->parent()->role(), QAccessible::PageTabList);
    EXPECT_EQ(tab->text(QAccessible::Name), "启动");
    EXPECT_FALSE(tab->state().selected);
    tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(tab->state().selected);
    EXPECT_TRUE(find<QWidget>("launchAtLogin").isVisible());

    second.setFocus();
    QTest::keyClick(&second, Qt::Key_Left);
    EXPECT_TRUE(first.hasFocus());
    EXPECT_TRUE(find<QWidget>("HarbrixSelectedLanguage").isVisible());
    for (const QWidget* control : scenes.window("settings")->findChildren<QWidget*>()) {
        if (control->inherits("QAbstractItemView")) // the list of a combo box, which has the name
            continue;
        const bool takesKeys = control->focusPolicy() != Qt::NoFocus && !control->focusProxy();
        const auto* button = qobject_cast<const QAbstractButton*>(control);
        const QString name =
            button ? button->text() + button->accessibleName() : control->accessibleName();
        EXPECT_FALSE(takesKeys && name.isEmpty())
            << control->metaObject()->className() << control->objectName().toStdString();
    }
}

TEST_F(SettingsTest, SwitchesStoreBooleansAndShowTheirDefaultForAnythingElse) {
    const struct {
        const char* key;
        bool isOnByDefault;
    } rows[] = {
        {"launchAtLogin", false},          {"autoMountOnLaunch", true},
        {"keepAliveEnabled", true},        {"notificationsEnabled", true},
        {"notify.mountSuccess", true},     {"notify.mountFailure", true},
        {"notify.unmount", false},         {"notify.networkChange", true},
        {"notify.transferComplete", true}, {"notify.transferFailed", true},
        {"notify.cacheCleanup", false},    {"cache.autoCleanup", true},
        {"log.debugMode", false},          {"log.fileEnabled", false},
    };
    open();
    for (const auto& row : rows) {
        EXPECT_EQ(find<QCheckBox>(row.key).isChecked(), row.isOnByDefault) << row.key;
        click(row.key);
        EXPECT_EQ(defaults.boolean(row.key), !row.isOnByDefault) << row.key;
        EXPECT_EQ(find<QCheckBox>(row.key).isChecked(), !row.isOnByDefault) << row.key;
    }
    EXPECT_TRUE(world.loginItem.isRegistered());
    click("launchAtLogin");
    EXPECT_FALSE(world.loginItem.isRegistered());

    defaults.set("autoMountOnLaunch", QString("false"));
    EXPECT_TRUE(find<QCheckBox>("autoMountOnLaunch").isChecked());
    defaults.set("autoMountOnLaunch", false); // by somebody else
    EXPECT_FALSE(find<QCheckBox>("autoMountOnLaunch").isChecked());
}

TEST_F(SettingsTest, SteppersKeepToTheirRangesAndTellInTheirUnits) {
    const struct {
        const char* key;
        const char* shown;
        double stepped;
        double lowest;
        double highest;
        const char* shownAtTheEnd;
    } rows[] = {
        {"keepAliveInterval", "3 min", 240, 60, 600, "10 min"},
        {"mount.defaultTimeout", "30s", 35, 5, 120, "120s"},
        {"mount.defaultRetryCount", "3", 4, 0, 10, "10"},
        {"mount.defaultRetryInterval", "10s", 15, 5, 60, "60s"},
    };
    open();
    for (const auto& row : rows) {
        auto& stepper = find<Stepper>(row.key);
        EXPECT_EQ(stepper.text(), row.shown);
        stepper.stepUp();
        EXPECT_EQ(defaults.value(row.key), UserDefaults::Value(row.stepped)) << row.key;
        for (int step = 0; step < 30; ++step)
            stepper.stepDown();
        EXPECT_EQ(defaults.number(row.key), row.lowest) << row.key;
        for (int step = 0; step < 30; ++step)
            stepper.stepUp();
        EXPECT_EQ(defaults.number(row.key), row.highest) << row.key;
        EXPECT_EQ(stepper.text(), row.shownAtTheEnd);
        defaults.set(row.key, 1e300);
        EXPECT_EQ(stepper.value(), row.highest) << row.key;
        defaults.set(row.key, QString("many"));
        EXPECT_EQ(stepper.text(), row.shown);
    }
    const QWidget* row = find<Stepper>("keepAliveInterval").parentWidget();
    EXPECT_FALSE(row->isHidden());
    click("keepAliveEnabled");
    EXPECT_TRUE(row->isHidden());
}

TEST_F(SettingsTest, TheVersionIsStoredAsItsRawValue) {
    open();
    const auto& picker = find<QComboBox>("mount.defaultSMBVersion");
    EXPECT_EQ(picker.currentText(), "Auto");
    const struct {
        int index;
        const char* title;
        const char* stored;
    } rows[] = {{1, "SMB 2.x", "2"}, {2, "SMB 3.x", "3"}, {0, "Auto", "auto"}};
    for (const auto& row : rows) {
        pick("mount.defaultSMBVersion", row.index);
        EXPECT_EQ(picker.currentText(), row.title);
        EXPECT_EQ(defaults.text("mount.defaultSMBVersion"), row.stored);
    }
    for (const auto& unusable : {UserDefaults::Value(QString("4")), UserDefaults::Value(true)}) {
        pick("mount.defaultSMBVersion", 2);
        defaults.set("mount.defaultSMBVersion", unusable);
        EXPECT_EQ(picker.currentText(), "Auto");
    }
}

TEST_F(SettingsTest, TheWheelScrollsThePageAndChangesOnlyWhatHasTheFocus) {
    SettingsView& window = open();
    const struct {
        int page;
        const char* control;
        const char* property;
    } rows[] = {{0, "HarbrixSelectedLanguage", "currentIndex"},
                {1, "keepAliveInterval", "value"},
                {3, "cache.maxSize", "value"},
                {4, "mount.defaultRetryCount", "value"},
                {5, "log.minimumLevel", "currentIndex"}};
    const auto turnWheel = [](QWidget& over) {
        const QPointF place = over.rect().center();
        QWheelEvent event(place, over.mapToGlobal(place), {}, {0, -120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&event); // as from the desktop: it may bring the focus
        qApp->notify(&over, &event);
    };
    for (const auto& row : rows) {
        window.showTab(row.page);
        settle();
        auto& control = find<QWidget>(row.control);
        const QVariant before = control.property(row.property);
        turnWheel(control);
        EXPECT_EQ(control.property(row.property), before) << row.control;
    }
    window.showTab(1);
    settle();
    auto& stepper = find<Stepper>("keepAliveInterval");
    const QPoint place = stepper.mapTo(&window, QPoint());
    turnWheel(stepper);
    EXPECT_LT(stepper.mapTo(&window, QPoint()).y(), place.y()) << "the page did not scroll";
    stepper.setFocus();
    turnWheel(stepper);
    EXPECT_EQ(stepper.text(), "2 min");
}

TEST_F(SettingsTest, ResettingTheNotificationsLeavesTheGlobalSwitch) {
    open();
    click("notificationsEnabled");
    click("notify.unmount");
    click("resetNotifications");
    EXPECT_FALSE(find<QCheckBox>("notify.unmount").isChecked());
    EXPECT_FALSE(defaults.boolean("notify.unmount"));
    EXPECT_FALSE(find<QCheckBox>("notificationsEnabled").isChecked());
}

TEST_F(SettingsTest, TheLimitOfTheCacheIsChosenInMebibytesAndReadBackInBytes) {
    open();
    auto& slider = find<QSlider>("cache.maxSize");
    EXPECT_EQ(slider.value(), 500);
    EXPECT_EQ(label("maxSizeText"), "500 MB");
    EXPECT_EQ(slider.minimum(), 100);
    EXPECT_EQ(slider.maximum(), 5000);

    slider.setSliderDown(true);
    slider.setSliderPosition(712); // steps are of a hundred
    EXPECT_EQ(defaults.value("cache.maxSize"), UserDefaults::Value(qint64(700) * 1'048'576));
    EXPECT_EQ(label("maxSizeText"), "700 MB");
    EXPECT_EQ(world.cache.statistics().maxSize, 700 * 1'048'576);
    slider.setSliderDown(false);
    EXPECT_EQ(label("maxSizeText"), "734003200 MB");
    EXPECT_EQ(slider.value(), 5000);
    EXPECT_EQ(defaults.integer("cache.maxSize"), 700 * 1'048'576);

    // At the end for the bytes that it reads, it steps from there, each time anew.
    for (int press = 0; press < 2; ++press) {
        QTest::keyClick(&slider, Qt::Key_Left);
        EXPECT_EQ(defaults.integer("cache.maxSize"), 4900LL * 1'048'576);
        EXPECT_EQ(slider.value(), 5000);
    }

    defaults.set("cache.maxSize", QString("much"));
    EXPECT_EQ(label("maxSizeText"), "500 MB");
}

TEST_F(SettingsTest, TheCachePageTellsFiguresAndCleansUp) {
    const auto loaded = world.cache.loaded();
    ASSERT_TRUE(settleUntil([&loaded] { return loaded.await_ready(); }));
    open();
    find<QAbstractButton>("settings.tab.cache").click();
    ASSERT_TRUE(settleUntil([this] { return world.cacheDirectory.availableDiskSpace() > 0; }));
    EXPECT_EQ(label("entryCount"), "0");
    EXPECT_EQ(label("hitRate"), "0.0%");
    EXPECT_FALSE(find<QLabel>("lastCleanup").isVisible());

    const QString source = world.directory.filePath("film.txt");
    QFile file(source);
    ASSERT_TRUE(file.open(QFile::WriteOnly) && file.write("0123456789") == 10);
    file.close();
    world.cache.offer(QUrl::fromLocalFile(source), QUuid::createUuid(), "film.txt");
    ASSERT_TRUE(settleUntil([this] { return label("entryCount") == "1"; }));
    EXPECT_EQ(label("totalSize"), byteCountText(10, world.language.locale()));

    click("cleanupNow");
    ASSERT_TRUE(settleUntil([this] { return find<QLabel>("lastCleanup").isVisible(); }));
    EXPECT_EQ(label("lastRemoved"), "0");
    EXPECT_EQ(label("lastCleanup"), "现在");
    click("clearAll");
    EXPECT_TRUE(settleUntil([this] { return label("entryCount") == "0"; }));
}

TEST_F(SettingsTest, TheSwitchOfTheCleanUpStartsAndStopsItAtOnce) {
    open();
    const auto cleanedAfter = [this](Seconds span) {
        world.automation.scheduler.advance(span);
        const bool isUnderWay = world.cacheDirectory.isCleaningUp();
        (void) settleUntil([this] { return !world.cacheDirectory.isCleaningUp(); });
        return isUnderWay;
    };
    world.cacheDirectory.startPeriodicCleanup();
    click("cache.autoCleanup");
    EXPECT_FALSE(cleanedAfter(24h));
    click("cache.autoCleanup");
    EXPECT_FALSE(cleanedAfter(5h));
    EXPECT_TRUE(cleanedAfter(2h));
}

TEST_F(SettingsTest, DebugModeLowersTheLevelAndLeavesThePicker) {
    defaults.set("log.minimumLevel", qint64(2));
    open();
    const auto& level = find<QComboBox>("log.minimumLevel");
    EXPECT_EQ(level.count(), 5);
    EXPECT_EQ(level.currentText(), logLevelMark(LogLevel::warning) + " WARN");
    click("log.debugMode");
    EXPECT_EQ(defaults.integer("log.minimumLevel"), 0);
    EXPECT_EQ(level.currentData().toInt(), 2);
    pick("log.minimumLevel", 3);
    EXPECT_EQ(defaults.value("log.minimumLevel"), UserDefaults::Value(qint64(3)));
}

TEST_F(SettingsTest, ThePickerShowsTheLevelInForceWhereTheStoredOneIsNone) {
    defaults.set("log.minimumLevel", qint64(7));
    open();
    EXPECT_EQ(find<QComboBox>("log.minimumLevel").currentData().toInt(), int(LogLevel::info));
}

TEST_F(SettingsTest, LogsAreExportedWhereTheUserSaysAndCleared) {
    open();
    find<QAbstractButton>("settings.tab.logging").click();
    const QString nothing = byteCountText(0, world.language.locale());
    EXPECT_EQ(label("logSize"), nothing);
    click("exportLogs");
    const auto idle = [] { return workerPool().activeThreadCount() == 0; };
    ASSERT_TRUE(settleUntil(idle));
    settle();
    EXPECT_FALSE(exists("savePanel")) << "there is nothing to export";

    click("log.fileEnabled");
    world.log.log(LogLevel::error, "a line");
    world.log.waitForWrites();
    for (int time = 0; time < 2; ++time)
        find<QAbstractButton>("exportLogs").click();
    ASSERT_TRUE(settleUntil([this] { return exists("savePanel"); }));
    ASSERT_TRUE(settleUntil(idle));
    EXPECT_EQ(scenes.window("settings")->findChildren<QFileDialog*>().size(), 1);
    auto& panel = find<QFileDialog>("savePanel");
    const QString proposed = QFileInfo(panel.selectedFiles().value(0)).fileName();
    EXPECT_TRUE(proposed.startsWith("Harbrix-Logs-")) << proposed.toStdString();
    const auto temporaryFiles = [this] {
        return QDir(world.directory.path()).entryList({"Harbrix-Logs-*"}).size();
    };
    emit panel.fileSelected(world.directory.filePath("missing/saved.log"));
    ASSERT_TRUE(settleUntil(idle));
    EXPECT_EQ(temporaryFiles(), 1) << "a failed move loses the text";
    const QString place = world.directory.filePath("saved.log");
    QFile former(place); // to be replaced, as the panel has asked
    ASSERT_TRUE(former.open(QFile::WriteOnly) && former.write("former") == 6);
    former.close();
    panel.selectFile(place);
    emit panel.fileSelected(place);
    ASSERT_TRUE(settleUntil([&] { return temporaryFiles() == 0 && idle(); }));
    QFile saved(place);
    ASSERT_TRUE(saved.open(QFile::ReadOnly));
    EXPECT_TRUE(saved.readAll().contains("a line"));

    click("clearLogs");
    world.log.waitForWrites();
    find<QAbstractButton>("settings.tab.cache").click();
    find<QAbstractButton>("settings.tab.logging").click();
    EXPECT_EQ(label("logSize"), nothing);
}

} // namespace
} // namespace harbrix
