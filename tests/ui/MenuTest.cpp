#include "services/LanguageManager.h"
#include "support/UiWorld.h"
#include "ui/menu/MenuContent.h"
#include "ui/menu/StatusMenu.h"

#include <QPointer>

namespace harbrix {
namespace {

using Kind = MountState::Kind;

class MenuTest : public testing::Test {
protected:
    MenuTest() { world.language.setSelectedLanguage(AppLanguage::zhHans); }

    [[nodiscard]] std::vector<MenuEntry> content() const {
        return menuContent(world.automation.store.configs(),
                           world.automation.appState.nasStatuses(),
                           world.recentFiles.recentFiles());
    }
    [[nodiscard]] static QStringList titles(const std::vector<MenuEntry>& entries) {
        QStringList titles;
        for (const MenuEntry& entry : entries)
            titles << (entry.kind == MenuEntry::Kind::separator ? QString("-") : entry.title);
        return titles;
    }

    UiWorld world;
};

TEST_F(MenuTest, WithoutSharesOneRowStandsAboveTheCommands) {
    EXPECT_EQ(titles(content()), QStringList({"暂无 NAS 配置", "-", "立即挂载全部", "立即断开全部",
                                              "-", "打开主窗口", "打开设置...", "检查更新...", "-",
                                              "关于 Harbrix", "-", "退出 Harbrix"}));
    EXPECT_EQ(content().front().kind, MenuEntry::Kind::row);
    EXPECT_EQ(content().back().keyEquivalent, "q");
}

TEST_F(MenuTest, EachStateHasItsMarkerAndItsText) {
    const struct {
        MountState state;
        const char* title;
    } cases[] = {
        {Kind::idle, "⚪ Media  —  空闲"},
        {Kind::mounting, "🟡 Media  —  挂载中..."},
        {Kind::mounted, "🟢 Media  —  已挂载"},
        {Kind::unmounting, "🟠 Media  —  卸载中..."},
        {Kind::offline, "⚫ Media  —  离线"},
        {MountState::failed(HarbrixError::timeout("x")),
         "🔴 Media  —  失败: Operation timed out: x"},
    };
    const NASConfig media = world.automation.add("Media");
    for (const auto& [state, title] : cases) {
        world.automation.appState.updateStatus(media.id, state);
        EXPECT_EQ(content().front().title, QString::fromUtf8(title));
    }
    world.automation.appState.removeStatus(media.id);
    EXPECT_EQ(content().front().title, "⚪ Media  —  空闲");
}

TEST_F(MenuTest, CommandsKeepTheirActionsWhileRowsComeAndGo) {
    StatusMenu menu;
    menu.setContent(content());
    QAction* quit = menu.actions().constLast();
    world.automation.add("First");
    world.automation.add("Second");
    menu.setContent(content());
    EXPECT_EQ(menu.actions().size(), 13);
    EXPECT_EQ(menu.actions().at(1)->text(), "⚪ Second  —  空闲");
    EXPECT_FALSE(menu.actions().at(1)->isEnabled());
    EXPECT_EQ(menu.actions().constLast(), quit);

    std::vector<MenuCommand> chosen;
    QObject::connect(&menu, &StatusMenu::commandChosen, &menu,
                     [&chosen](const MenuEntry& entry) { chosen.push_back(entry.command); });
    for (QAction* action : menu.actions())
        action->trigger();
    EXPECT_EQ(chosen,
              (std::vector<MenuCommand>{MenuCommand::mountAll, MenuCommand::unmountAll,
                                        MenuCommand::openMainWindow, MenuCommand::openSettings,
                                        MenuCommand::checkForUpdates, MenuCommand::openAbout,
                                        MenuCommand::quit}));
}

TEST_F(MenuTest, MountedSharesCanBeBrowsedAndRecentFilesOpened) {
    const NASConfig media = world.automation.add("Media");
    world.automation.add("Other");
    world.automation.appState.updateStatus(media.id, Kind::mounted,
                                           QUrl::fromLocalFile("/mnt/Media"));
    for (int number = 1; number <= 7; ++number)
        world.recentFiles.record(QUrl::fromLocalFile(QString("/home/anna/%1.txt").arg(number)));
    const auto entries = content();
    EXPECT_EQ(
        titles(entries).mid(0, 11),
        QStringList({"🟢 Media  —  已挂载", "  浏览文件...", "⚪ Other  —  空闲", "-",
                     "最近文件", "  7.txt", "  6.txt", "  5.txt", "  4.txt", "  3.txt", "-"}));
    EXPECT_EQ(std::get<QUuid>(entries[1].target), media.id);
    EXPECT_EQ(entries[4].kind, MenuEntry::Kind::row);
    EXPECT_EQ(std::get<QUrl>(entries[5].target), QUrl::fromLocalFile("/home/anna/7.txt"));
    EXPECT_EQ(entries[5].toolTip, "/home/anna/7.txt");
}

TEST_F(MenuTest, AnEntryNeverComesToMeanAnotherFile) {
    StatusMenu menu;
    world.recentFiles.record(QUrl::fromLocalFile("/home/anna/first"));
    menu.setContent(content());
    const QPointer<QAction> first = menu.actions().at(3);
    ASSERT_EQ(first->text(), "  first");
    world.recentFiles.record(QUrl::fromLocalFile("/home/anna/second"));
    menu.setContent(content());
    EXPECT_EQ(menu.actions().at(3)->text(), "  second");
    EXPECT_EQ(menu.actions().at(4)->text(), "  first");
    // A host that still shows the old menu may click on it.
    EXPECT_TRUE(first.isNull());
}

TEST(HostTitle, KeepsNamesAsTheyAreInTheProtocolOfTheTray) {
    const struct {
        QString title;
        QString sent; ///< with Qt's own turning of the first "&" into "_" still to come
    } cases[] = {
        {"my_nas", "my__nas"},
        {"A & B & C", "&A & B & C"},
        {"two\nlines", "two lines"},
        {QString(500, QLatin1Char('x')),
         QString(50, QLatin1Char('x')) + QChar(0x2026) + QString(49, QLatin1Char('x'))},
        {QString(80, QChar(0x6f22)) + "end",
         QString(25, QChar(0x6f22)) + QChar(0x2026) + QString(23, QChar(0x6f22)) + "end"},
    };
    for (const auto& [title, sent] : cases)
        EXPECT_EQ(hostTitle(title), sent);
    EXPECT_EQ(ownTitle("my_nas & co\n"), "my_nas && co ");
}

} // namespace
} // namespace harbrix
