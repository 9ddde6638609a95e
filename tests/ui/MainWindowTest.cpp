#include "WindowTest.h"
#include "ui/main/ShareListView.h"
#include "ui/main/ShareRowDelegate.h"
#include "ui/widgets/NoticeBar.h"

#include <QAccessible>
#include <QDir>
#include <QMenu>

namespace harbrix {
namespace {

using Kind = MountState::Kind;

class MainWindowTest : public WindowTest {
protected:
    ShareListView& list() { return find<ShareListView>("shareList"); }
    ShareListModel& model() { return *qobject_cast<ShareListModel*>(list().model()); }
    void clickRow(int row) {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                          list().visualRect(model().index(row)).topLeft() + QPoint(40, 12));
        settle();
    }
    void setState(const NASConfig& config, const MountState& state, const QString& path = {}) {
        std::optional<QUrl> mountPoint;
        if (!path.isEmpty())
            mountPoint = QUrl::fromLocalFile(path);
        world.automation.appState.updateStatus(config.id, state, mountPoint);
        settle();
    }
};

TEST_F(MainWindowTest, ShowsHintsWhileThereIsNothing) {
    open();
    EXPECT_TRUE(find("noShares").isVisible());
    EXPECT_TRUE(find("detailHint").isVisible());
    EXPECT_FALSE(list().isVisible());
}

TEST_F(MainWindowTest, TheToolbarOpensTheSettings) {
    open();
    click("openSettingsButton");
    ASSERT_TRUE(scenes.window("settings"));
    EXPECT_TRUE(scenes.window("settings")->isVisible());
}

TEST_F(MainWindowTest, AddStoresABlankRecordAndOpensItsForm) {
    MainWindowView& window = open();
    click("addNAS");
    ASSERT_EQ(world.automation.store.configs().size(), 1U);
    EXPECT_EQ(onlyRecord().networkBinding.ipRange, "0.0.0.0/0");
    EXPECT_EQ(window.selectedConfigID(), onlyRecord().id);
    EXPECT_TRUE(find("shareForm").isVisible());
    EXPECT_EQ(list().currentIndex().row(), 0);
}

TEST_F(MainWindowTest, MountedSharesAreCardsUntilOneIsSelected) {
    const NASConfig media = world.automation.add("Media");
    const NASConfig photos = world.automation.add("Photos");
    open();
    setState(media, Kind::mounted, "/mnt/media");
    EXPECT_TRUE(find("mountedFolders").isVisible());
    EXPECT_EQ(find("mountedFolders").findChildren<QWidget*>("mountedFolderCard").size(), 1);

    click("openMountedFolder");
    EXPECT_EQ(world.opened, std::vector<QUrl>{QUrl::fromLocalFile("/mnt/media")});

    clickRow(1);
    EXPECT_TRUE(find("shareForm").isVisible());
    EXPECT_EQ(find<QLineEdit>("name").text(), "Photos");
    click("close");
    EXPECT_TRUE(find("mountedFolders").isVisible());
    setState(media, Kind::idle);
    EXPECT_TRUE(find("detailHint").isVisible());
}

TEST_F(MainWindowTest, AClickOnTheMountPointOpensItAndSelectsNothing) {
    const NASConfig media = world.automation.add("Media");
    MainWindowView& window = open();
    setState(media, Kind::mounted, "/mnt/media");
    const QRect link = ShareRowDelegate::linkRect(list().visualRect(model().index(0)),
                                                  model().row(0), Qt::LeftToRight);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, link.center());
    EXPECT_EQ(world.opened, std::vector<QUrl>{QUrl::fromLocalFile("/mnt/media")});
    EXPECT_FALSE(window.selectedConfigID());
}

TEST_F(MainWindowTest, WhatIsTypedSurvivesAnotherSelectionAddAndClosing) {
    world.automation.add("First");
    world.automation.add("Second");
    MainWindowView& window = open();
    const auto isEdited = [this] { return model().row(0).isEdited; };
    const auto leaves =
        std::vector<std::function<void()>>{[&] { clickRow(1); }, [&] { click("addNAS"); },
                                           [&] { click("close"); }, [&] { window.close(); }};
    for (const auto& leave : leaves) {
        open();
        clickRow(0);
        EXPECT_FALSE(isEdited());
        type("address", "nas.example");
        EXPECT_TRUE(isEdited());
        leave();
        settle();
        open();
        clickRow(0);
        EXPECT_EQ(find<QLineEdit>("address").text(), "nas.example");
        EXPECT_TRUE(isEdited());
        emit list().discardRequested(model().row(0).id);
        EXPECT_EQ(find<QLineEdit>("address").text(), "192.0.2.10");
    }
    type("address", "nas.example");
    click("save");
    ASSERT_TRUE(waitForSave());
    EXPECT_FALSE(isEdited());
    EXPECT_EQ(world.automation.store.configs().front().address, "nas.example");
}

TEST_F(MainWindowTest, OnlyAPlainClickOnARowChangesWhichFormIsOpen) {
    const NASConfig first = world.automation.add("First");
    world.automation.add("Second");
    MainWindowView& window = open();
    clickRow(0);
    const auto rowCentre = [this](int row) {
        return list().visualRect(model().index(row)).topLeft() + QPoint(40, 12);
    };
    QTest::mouseClick(list().viewport(), Qt::RightButton, {}, rowCentre(1));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::ControlModifier, rowCentre(0));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                      list().viewport()->rect().bottomLeft() - QPoint(-40, 4));
    settle();
    EXPECT_EQ(window.selectedConfigID(), first.id);
    EXPECT_TRUE(list().selectionModel()->isSelected(model().index(0)));
}

TEST_F(MainWindowTest, ABarStaysWhileSettingsCannotBeSaved) {
    open();
    EXPECT_FALSE(find("notice").isVisible());
    const QString path = world.automation.defaults.filePath();
    QFile::remove(path);
    ASSERT_TRUE(QDir().mkpath(path));
    world.automation.add("Media");
    settle();
    EXPECT_TRUE(find("notice").isVisible());
    EXPECT_TRUE(find<NoticeBar>("notice").text().contains(path));
    ASSERT_TRUE(QDir().rmdir(path));
    world.automation.add("Photos");
    settle();
    EXPECT_FALSE(find("notice").isVisible());
}

TEST_F(MainWindowTest, DeletingKeepsTheSelectionOfAnotherShare) {
    const NASConfig first = world.automation.add("First");
    const NASConfig second = world.automation.add("Second");
    MainWindowView& window = open();
    clickRow(1);
    setState(first, Kind::mounted, "/mnt/first");

    emit list().deleteRequested(first.id);
    settle();
    EXPECT_EQ(window.selectedConfigID(), second.id);
    EXPECT_EQ(list().currentIndex().row(), 0);
    EXPECT_TRUE(world.automation.engine.calls.empty()) << "deleting does not unmount";

    emit list().deleteRequested(second.id);
    settle();
    EXPECT_FALSE(window.selectedConfigID());
    EXPECT_FALSE(exists("shareForm"));
}

TEST_F(MainWindowTest, ARecordThatIsDeletedElsewhereClosesItsForm) {
    const NASConfig first = world.automation.add("First");
    world.automation.add("Second");
    open();
    clickRow(0);
    world.automation.store.remove(first.id);
    settle();
    EXPECT_FALSE(exists("shareForm"));
    EXPECT_FALSE(list().currentIndex().isValid()) << "no neighbour is selected instead";
}

TEST_F(MainWindowTest, TheContextMenuOfARowDeletesIt) {
    world.automation.add("Media");
    open();
    clickRow(0);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
    QCoreApplication::sendEvent(&list(), &event);
    auto* menu = list().findChild<QMenu*>("shareMenu");
    ASSERT_TRUE(menu);
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions().constFirst()->text(), "删除");
    menu->actions().constFirst()->trigger();
    settle();
    EXPECT_TRUE(world.automation.store.configs().empty());
}

TEST_F(MainWindowTest, RowsTellStateAddressAndNetworkInWords) {
    const NASConfig home = world.automation.add("Home");
    const NASConfig away = world.automation.add("Away", "10.0.0.0/8");
    NASConfig manual = world.automation.add("Manual");
    manual.isEnabled = false;
    world.automation.store.update(manual);
    open();
    setState(home, Kind::mounted, "/mnt/home/");
    setState(away, MountState::failed(HarbrixError::timeout("x")));
    const auto spoken = [this](int row) {
        return model().data(model().index(row), Qt::AccessibleTextRole).toString();
    };
    EXPECT_EQ(spoken(0), "Home, 已挂载, /mnt/home, Network matched");
    EXPECT_EQ(spoken(1), "Away, 失败: Operation timed out: x, 192.0.2.10, IP mismatch");
    EXPECT_EQ(spoken(2), "Manual, 空闲, 192.0.2.10");

    world.automation.goOnline("10.1.2.3");
    settle();
    EXPECT_EQ(spoken(1), "Away, 失败: Operation timed out: x, 192.0.2.10, Network matched");
}

TEST_F(MainWindowTest, ALanguageChangeRedrawsAllTextsAtOnce) {
    click((open(), "addNAS"));
    auto* window = scenes.window("main");
    EXPECT_EQ(find<QAbstractButton>("save").text(), "保存");
    world.language.setSelectedLanguage(AppLanguage::german);
    EXPECT_EQ(find<QAbstractButton>("save").text(), "Speichern");
    EXPECT_EQ(find<QAbstractButton>("addNAS").text(), "NAS hinzufügen");
    EXPECT_EQ(find<QLineEdit>("name").accessibleName(), "Name");
    for (const QLabel* label : window->findChildren<QLabel*>())
        for (const QChar c : label->text())
            EXPECT_NE(c.script(), QChar::Script_Han) << qPrintable(label->text());
}

TEST_F(MainWindowTest, EveryControlHasANameForScreenReaders) {
    click((open(), "addNAS"));
    pickIn("bindingStrategy", 2);
    for (QWidget* widget : scenes.window("main")->findChildren<QWidget*>()) {
        if (!widget->isVisible() || !(widget->focusPolicy() & Qt::TabFocus) || widget->focusProxy())
            continue;
        const QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(widget);
        ASSERT_TRUE(spoken);
        const bool scrolls = qobject_cast<QAbstractScrollArea*>(widget) != nullptr;
        if (scrolls && widget != &list())
            continue;
        EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className() << qPrintable(widget->objectName());
    }
}

TEST_F(MainWindowTest, OddNamesAndTwoHundredSharesDoNotBreakTheList) {
    world.automation.add(QString(5000, 'x'));
    world.automation.add("مشاركة العائلة");
    world.automation.add("👩‍👩‍👧‍👦 \n <b>bold</b> & _under_");
    world.automation.add("");
    for (int index = 4; index < 200; ++index)
        world.automation.add(QString("Share %1").arg(index));
    open();
    EXPECT_EQ(model().rowCount(), 200);
    EXPECT_FALSE(scenes.window("main")->grab().isNull());
    for (const NASConfig& config : world.automation.store.configs())
        world.automation.appState.updateStatus(config.id, Kind::mounted,
                                               QUrl::fromLocalFile("/mnt/" + config.name));
    settle();
    EXPECT_EQ(find("mountedFolders").findChildren<QWidget*>("mountedFolderCard").size(), 200);
    EXPECT_FALSE(scenes.window("main")->grab().isNull());
}

TEST_F(MainWindowTest, ThePulseTicksOnlyWhileARowMountsAndTheWindowIsSeen) {
    const NASConfig media = world.automation.add("Media");
    MainWindowView& window = open();
    EXPECT_FALSE(list().pulse().isTicking());
    setState(media, Kind::mounting);
    EXPECT_TRUE(list().pulse().isTicking());
    window.hide();
    settle();
    EXPECT_FALSE(list().pulse().isTicking());
    window.show();
    settle();
    EXPECT_TRUE(list().pulse().isTicking());
    setState(media, Kind::mounted, "/mnt/media");
    EXPECT_FALSE(list().pulse().isTicking());
}

TEST_F(MainWindowTest, ClosingKeepsTheSelectionForTheNextTime) {
    world.automation.add("Media");
    MainWindowView& window = open();
    clickRow(0);
    window.close();
    settle();
    open();
    EXPECT_TRUE(window.selectedConfigID());
    EXPECT_TRUE(find("shareForm").isVisible());
}

TEST_F(MainWindowTest, TheToolbarFindsAnAboutWindowByItsTitle) {
    open();
    const auto aboutWindows = [] {
        return std::ranges::count_if(QApplication::topLevelWidgets(), [](const QWidget* window) {
            return window->windowTitle() == "关于 Harbrix" && window->isVisible();
        });
    };
    click("openAboutButton");
    click("openAboutButton");
    EXPECT_EQ(aboutWindows(), 1);
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->objectName() == "about")
            window->close();
    settle();
    EXPECT_EQ(aboutWindows(), 0);
}

} // namespace
} // namespace harbrix
