#include "WindowTest.h"

#include <QMessageBox>

namespace harbrix {
namespace {

using Kind = MountState::Kind;
using Plan = ScriptedMountOperations::Plan;

class NASDetailViewTest : public WindowTest {
protected:
    NASDetailViewTest() { open(); }

    [[nodiscard]] std::optional<QByteArray> storedPassword(const QString& account) const {
        return world.automation.secrets.secret(
            {SecretIdentity::Kind::GenericPassword,
             {{"service", KeychainManager::service}, {"account", account}}});
    }
    [[nodiscard]] Kind state() const { return world.automation.state(onlyRecord()).kind(); }
    QMessageBox* alert() {
        return scenes.window("main")->findChild<QMessageBox*>("networkMismatchAlert");
    }
    void answerAlert(const char* button) {
        QTest::mouseClick(alert()->findChild<QAbstractButton*>(button), Qt::LeftButton);
        settle();
    }
    /// A record outside of the present network, with its form open.
    void openFormOfShareElsewhere() {
        const NASConfig config = world.automation.add("Office", "10.0.0.0/8");
        open().setSelectedConfigID(config.id);
        settle();
    }
};

TEST_F(NASDetailViewTest, AUserDescribesTestsSavesMountsUnmountsAndDeletesAShare) {
    click("addNAS");
    type("name", "Media");
    type("address", "192.168.1.10");
    type("sharePath", "/shared/media");
    type("username", "anna");
    type("password", "s3cret");
    click("testConnection");
    EXPECT_EQ(find<QLabel>("testResultText").text(), "连接成功（延迟 1ms）");

    click("save");
    ASSERT_TRUE(waitForSave());
    const NASConfig saved = onlyRecord();
    EXPECT_EQ(saved.name, "Media");
    EXPECT_EQ(saved.address, "192.168.1.10");
    EXPECT_EQ(saved.username, "anna");
    EXPECT_EQ(saved.keychainIdentifier, "") << "a record of the add command keeps it empty";
    EXPECT_EQ(storedPassword(""), QByteArray("s3cret"));
    EXPECT_EQ(state(), Kind::mounted) << "saving an enabled record mounts it";
    EXPECT_TRUE(find("shareForm").isVisible()) << "saving does not close the form";

    EXPECT_FALSE(find("mount").isVisible());
    click("openInFinder");
    EXPECT_EQ(world.opened.size(), 1U);
    click("unmount");
    EXPECT_EQ(state(), Kind::idle);
    click("mount");
    EXPECT_EQ(state(), Kind::mounted);
    EXPECT_EQ(world.automation.notifier.told,
              QStringList({"mounted Media", "unmounted Media", "mounted Media"}));

    click("close");
    EXPECT_FALSE(exists("shareForm"));
}

TEST_F(NASDetailViewTest, AnEmptyFormIsSavedAndItsMountReportsWhatIsMissing) {
    world.automation.engine.planMount = [](const NASConfig&) {
        return Plan{Seconds(0), HarbrixError::mountFailed("no address")};
    };
    click("addNAS");
    click("save");
    ASSERT_TRUE(waitForSave());
    EXPECT_EQ(onlyRecord().username, std::nullopt);
    EXPECT_EQ(find<QLabel>("mountError").text(), "Mount operation failed: no address");
    EXPECT_TRUE(find("mountError").isVisible());
    EXPECT_TRUE(world.automation.secrets.calls().empty()) << "an empty password is not stored";
}

TEST_F(NASDetailViewTest, ARecordThatIsNotToMountByItselfIsOnlySaved) {
    click("addNAS");
    find<QAbstractButton>("isEnabled").click();
    click("save");
    ASSERT_TRUE(waitForSave());
    EXPECT_FALSE(onlyRecord().isEnabled);
    EXPECT_TRUE(world.automation.engine.calls.empty());
}

TEST_F(NASDetailViewTest, NfsHidesWhatItDoesNotNeedAndIsStoredAsGuest) {
    click("addNAS");
    type("username", "anna");
    type("password", "s3cret");
    pickIn("protocol", 1);
    for (const char* name : {"authMethod", "username", "password", "smbVersion"})
        EXPECT_FALSE(find(name).isVisible()) << name;
    for (const char* name : {"nfsVersionNote", "nfsNoAuthNote", "nfsMountOptions"})
        EXPECT_TRUE(find(name).isVisible()) << name;
    EXPECT_EQ(find("sharePath").accessibleName(), "NFS 导出路径");
    click("save");
    ASSERT_TRUE(waitForSave());
    EXPECT_EQ(onlyRecord().authMethod, AuthMethod::guest);
    EXPECT_EQ(onlyRecord().username, std::nullopt);
    EXPECT_TRUE(world.automation.secrets.calls().empty());
}

TEST_F(NASDetailViewTest, AMismatchAsksFirstAndOnlyAConfirmationMounts) {
    openFormOfShareElsewhere();
    click("mount");
    ASSERT_TRUE(alert());
    EXPECT_EQ(alert()->text(), "网络环境不匹配");
    answerAlert("cancelMount");
    EXPECT_TRUE(world.automation.engine.calls.empty());

    click("mount");
    answerAlert("confirmMount");
    EXPECT_EQ(world.automation.engine.calls.size(), 1U);
}

TEST_F(NASDetailViewTest, TheMountButtonAsksForTheRecordThatTheFormWasOpenedWith) {
    openFormOfShareElsewhere();
    click("presetAllNetworks");
    click("mount");
    EXPECT_TRUE(alert()) << "what is typed does not count before it is saved";
}

TEST_F(NASDetailViewTest, TestResultsNeedAnAddressAndTellTheFailure) {
    world.automation.engine.planPing = [](const NASConfig&) {
        return Plan{Seconds(1), HarbrixError::connectionFailed("no route")};
    };
    click("addNAS");
    click("testConnection");
    EXPECT_FALSE(find("testResult").isVisible());
    type("address", "192.0.2.99");
    EXPECT_EQ(find<QLabel>("testResultText").text(), "正在测试连接...");
    EXPECT_TRUE(find("testResult").isVisible());
    world.automation.scheduler.advance(Seconds(1));
    EXPECT_EQ(find<QLabel>("testResultText").text(), "连接失败：Connection failed: no route");
}

TEST_F(NASDetailViewTest, ATestThatRunsWhenTheFormClosesEndsWithoutEffect) {
    world.automation.engine.planPing = [](const NASConfig&) { return Plan{Seconds(5), {}}; };
    click("addNAS");
    type("address", "192.0.2.99");
    click("testConnection");
    click("close");
    world.automation.scheduler.advance(Seconds(10));
    EXPECT_FALSE(exists("testResult"));
}

TEST_F(NASDetailViewTest, PresetsAndNetworkNamesAreTakenAsTheyStand) {
    click("addNAS");
    auto& range = find<QLineEdit>("networkIPRange");
    click("presetCurrentNetwork");
    EXPECT_EQ(range.text(), "192.168.1.0/24");
    click("presetCurrentIP");
    EXPECT_EQ(range.text(), "192.168.1.5");
    pickIn("bindingStrategy", 1);
    EXPECT_FALSE(range.isVisible());
    for (const char* name : {"  Home ", "Home", "   ", "Café_5G"}) {
        type("newSSID", QString::fromUtf8(name));
        click("addSSID");
    }
    click("save");
    ASSERT_TRUE(waitForSave());
    EXPECT_EQ(onlyRecord().networkBinding.ssidList, QStringList({"Home", "Café_5G"}));
    EXPECT_EQ(onlyRecord().networkBinding.strategy, NetworkBindingStrategy::ssid);
    click("removeSSID");
    EXPECT_EQ(find("shareForm").findChildren<QWidget*>("ssid").size(), 1);
}

TEST_F(NASDetailViewTest, AnEmptyRangeIsFilledWithThePresentNetworkWhenItIsShown) {
    const NASConfig config = world.automation.add("Media", "");
    open().setSelectedConfigID(config.id);
    settle();
    EXPECT_EQ(find<QLineEdit>("networkIPRange").text(), "192.168.1.0/24");
}

TEST_F(NASDetailViewTest, AMountStartedElsewhereShowsHereAtOnce) {
    click("addNAS");
    world.automation.appState.updateStatus(onlyRecord().id, Kind::mounting);
    EXPECT_TRUE(find("mounting").isVisible());
    EXPECT_FALSE(find("mount").isVisible());
    world.automation.appState.updateStatus(onlyRecord().id, Kind::offline);
    EXPECT_TRUE(find("mount").isVisible());
}

TEST_F(NASDetailViewTest, TwoSavesInARowEndWithTheSecond) {
    click("addNAS");
    type("name", "First");
    type("password", "one");
    find<QAbstractButton>("save").click();
    type("name", "Second");
    type("password", "two");
    find<QAbstractButton>("save").click();
    ASSERT_TRUE(waitForSave());
    EXPECT_EQ(onlyRecord().name, "Second");
    EXPECT_EQ(storedPassword(""), QByteArray("two"));
}

} // namespace
} // namespace harbrix
