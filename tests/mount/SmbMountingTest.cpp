#include "EngineFixture.h"

namespace harbrix {
namespace {

TEST(ExpectScript, EscapesQuotesAndBackslashesOnly) {
    const QString script = buildExpectScript(
        {"-o", "ro", "//ann@192.0.2.10/media", "/home/ann/Film \"Club\""}, R"(a"b\c$d[e])");
    EXPECT_EQ(script.toStdString(), R"script(set password "a\"b\\c$d[e]"
set args [list "-o" "ro" "//ann@192.0.2.10/media" "/home/ann/Film \"Club\""]
spawn /sbin/mount_smbfs {*}$args
expect {
    "Password for *:" {
        send "$password\r"
        expect eof
    }
    eof
}
)script");
}

TEST(ExpectScript, ItsFailureDoesNotShowThePassword) {
    struct Row {
        QString password;
        QString message; ///< as expect 5.45 gives it
        QString shown;
    };
    const std::vector<Row> rows{
        {"-x]y", "Password for ann:bad flag \"-x]y\r\": must be -i\n    while executing\n\"send",
         "Password for ann:bad flag \"••••••\r\": must be -i\n    while executing\n\"send"},
        {"pa$foo",
         "can't read \"foo\": no such variable\n    while executing\n\"set password \"pa$foo\"\"",
         "can't read \"••••••\": no such variable\n    while executing\n\"set password ••••••"},
        {"q\"a[b", "missing close-bracket\n    while executing\n\"set password \"q\\\"a[\"",
         "missing close-bracket\n    while executing\n\"set password ••••••"},
        {"a[no c]d", "invalid command name \"no\"\n    while executing\n\"no c\"\n    invoked",
         "invalid command name \"••••••\"\n    while executing\n\"••••••\"\n    invoked"},
        {"", "mount_smbfs: no such share", "mount_smbfs: no such share"},
        {"secret", "couldn't execute \"/sbin/mount_smbfs\": no such file or directory",
         "couldn't execute \"/sbin/mount_smbfs\": no such file or directory"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(withoutPassword(row.message, row.password), row.shown);
}

TEST(ShareUrl, EncodesTheShareAndNothingElse) {
    struct Row {
        QString user;
        QString share;
        QString expected;
    };
    const std::vector<Row> rows{
        {"ann", "/media/Film Club/", "//ann@h/media/Film%20Club"},
        {"ann", "///a//b///", "//ann@h/a//b"},
        {"ann", "/", "//ann@h/"},
        {"", "x", "//@h/x"},
        {"ann@corp dom", "x", "//ann@corp dom@h/x"},
        {"ann", "影片", "//ann@h/%E5%BD%B1%E7%89%87"},
        {"ann", "100%25", "//ann@h/100%2525"},
        {"ann", "aZ09-._~!$&'()*+,=:@", "//ann@h/aZ09-._~!$&'()*+,=:@"},
        {"ann", "\"#<>?[\\]^`{|};\n\x7f",
         "//ann@h/%22%23%3C%3E%3F%5B%5C%5D%5E%60%7B%7C%7D%3B%0A%7F"},
        {"ann", QString("a b") + QChar(0xD800), QString("//ann@h/a b") + QChar(0xD800)},
    };
    for (const Row& row : rows)
        EXPECT_EQ(buildShareUrl(row.user, "h", row.share), row.expected) << row.share.toStdString();
}

TEST(SMBClassification, Table) {
    const auto usage = QStringLiteral(
        "mount_smbfs 参数错误。可能原因：挂载点已被占用、共享路径格式不正确、或缺少必要参数。");
    const std::vector<std::pair<MountEngine::ProcessResult, QString>> rows{
        {{64, " \n", "\n\t"}, usage},
        {{64, "", " bad option \n"}, "mount_smbfs exited with code 64: bad option"},
        {{68, "ignored", "Authentication error\n"},
         "mount_smbfs exited with code 68: Authentication error"},
        {{1, " from output\n", " \n"}, "mount_smbfs exited with code 1: from output"},
        {{77, "", ""}, "mount_smbfs exited with code 77: "},
    };
    for (const auto& [result, text] : rows)
        EXPECT_EQ(classifySMBFailure(result), HarbrixError::mountFailed(text));
}

class SMBMountTest : public EngineTest {};

struct WayRow {
    AuthMethod auth;
    bool hasExpect;
    bool readOnly;
    QString commandLine;
    bool readsPassword;
};

TEST_F(SMBMountTest, WaysOfRunningTheTool) {
    const QString path = "/home/ann/HarbrixVolumes/media";
    const QString asAnn = "//ann@192.0.2.10/media " + path;
    const QString asGuest = "//guest@192.0.2.10/media " + path;
    const std::vector<WayRow> rows{
        {AuthMethod::guest, true, false, "/sbin/mount_smbfs " + asGuest, false},
        {AuthMethod::guest, false, true, "/sbin/mount_smbfs -o ro " + asGuest, false},
        {AuthMethod::password, true, true, "/usr/bin/expect -", true},
        {AuthMethod::password, false, false, "/sbin/mount_smbfs -N " + asAnn, true},
        {AuthMethod::password, false, true, "/sbin/mount_smbfs -N -o ro " + asAnn, true},
    };
    storePassword("p\"w");
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const WayRow& row = rows[i];
        ScriptedFileSystem files;
        ScriptedProcessLauncher tools(scheduler);
        tools.onLaunch = [](ScriptedChild& child) { child.exit(0); };
        if (row.hasExpect)
            files.addFile("/usr/bin/expect");
        MountEngine mounter(keychain, store, appState, files, tools, scheduler, "/home/ann");
        NASConfig config = smbShare();
        config.authMethod = row.auth;
        config.mountOptions.readOnly = row.readOnly;
        const auto callsBefore = secrets.calls().size();

        const auto mounted = finish(mounter.mountSMB(config));
        ASSERT_TRUE(mounted && mounted->has_value()) << "row " << i;
        EXPECT_EQ(**mounted, QUrl("file:///home/ann/HarbrixVolumes/media/"));
        EXPECT_EQ(tools.commandLines(), QStringList{row.commandLine}) << "row " << i;
        const bool byScript = row.auth == AuthMethod::password && row.hasExpect;
        EXPECT_EQ(tools.latest().writtenInput().has_value(), byScript) << "row " << i;
        if (byScript) {
            EXPECT_EQ(
                *tools.latest().writtenInput(),
                buildExpectScript({"-o", "ro", "//ann@192.0.2.10/media", path}, "p\"w").toUtf8());
        }
        EXPECT_EQ(secrets.calls().size() > callsBefore, row.readsPassword) << "row " << i;
        EXPECT_EQ(files.kindOf(path), FileSystem::Kind::Directory);
    }
    // What was written for the tool is gone again.
    EXPECT_EQ(secrets.size(), 1U);
}

TEST_F(SMBMountTest, AnAbsentUserIsAGuestWithAPasswordAndAnEmptyOneStaysEmpty) {
    storePassword("pw");
    NASConfig config = smbShare();
    config.username.reset();
    (void) finish(engine.mountSMB(config));
    EXPECT_TRUE(launcher.latest().writtenInput()->contains("//guest@192.0.2.10/media"));
    config.username = "";
    (void) finish(engine.mountSMB(config));
    EXPECT_TRUE(launcher.latest().writtenInput()->contains("//@192.0.2.10/media"));
}

TEST_F(SMBMountTest, WhatStopsAMountBeforeTheToolRuns) {
    struct Row {
        std::function<void(NASConfig&)> prepare;
        HarbrixError error;
    };
    fileSystem.addFile("/srv/file");
    fileSystem.failOn("/srv/readonly", EROFS);
    const std::vector<Row> rows{
        {[](NASConfig& config) { config.sharePath = ""; },
         HarbrixError::mountFailed("共享路径不能为空")},
        {[](NASConfig& config) { config.mountOptions.customMountPoint = "/srv/file"; },
         HarbrixError::mountFailed("Mount point path exists but is not a directory: /srv/file")},
        {[](NASConfig& config) { config.mountOptions.customMountPoint = "/srv/readonly"; },
         HarbrixError::mountFailed("Failed to create mount point directory '/srv/readonly': "
                                   "Read-only file system")},
        {[](NASConfig& config) { config.mountOptions.customMountPoint = "/Volumes/x"; },
         HarbrixError::mountFailed("无法自动创建 /Volumes/ 下的挂载点（需要 root 权限）。"
                                   "请使用默认路径，或手动在终端执行：sudo mkdir -p '/Volumes/x'")},
        {[](NASConfig& config) { config.keychainIdentifier = "other"; },
         HarbrixError::authenticationFailed("No password found in keychain for media")},
        {[this](NASConfig&) { storePassword(""); },
         HarbrixError::authenticationFailed("No password found in keychain for media")},
    };
    storePassword("pw");
    for (std::size_t i = 0; i < rows.size(); ++i) {
        NASConfig config = smbShare();
        rows[i].prepare(config);
        const auto mounted = finish(engine.mountSMB(config));
        ASSERT_TRUE(mounted && !mounted->has_value()) << "row " << i;
        EXPECT_EQ(mounted->error(), rows[i].error) << "row " << i;
    }
    EXPECT_EQ(launcher.commandLines(), QStringList());
}

TEST_F(SMBMountTest, AToolEntryThatCannotBeWrittenEndsTheMount) {
    ScriptedFileSystem withoutExpect;
    MountEngine mounter(keychain, store, appState, withoutExpect, launcher, scheduler, "/home/ann");
    storePassword("pw");
    secrets.failNext(InMemorySecretStore::Call::Add, SecretStore::NotAvailable);
    const auto mounted = finish(mounter.mountSMB(smbShare()));
    ASSERT_TRUE(mounted && !mounted->has_value());
    EXPECT_EQ(mounted->error().kind(), HarbrixError::Case::keychainError);
    EXPECT_EQ(launcher.commandLines(), QStringList());
}

TEST_F(SMBMountTest, AMountedPathIsASuccessWithoutPasswordOrTool) {
    for (const QString type : {"smbfs", "nfs"}) {
        NASConfig config = smbShare();
        config.mountOptions.customMountPoint = "/srv/" + type;
        fileSystem.mount("/srv/" + type, type);
        const auto mounted = finish(engine.mountSMB(config));
        ASSERT_TRUE(mounted && mounted->has_value());
        EXPECT_EQ(directoryPath(**mounted), "/srv/" + type);
    }
    EXPECT_TRUE(secrets.calls().empty());
    EXPECT_EQ(launcher.commandLines(), QStringList());
}

TEST_F(SMBMountTest, WhatAKilledToolLeftBehindIsMountedOver) {
    const QString path = "/home/ann/HarbrixVolumes/media";
    fileSystem.mount(path, "fuse.smbfs");
    fileSystem.killMount(path);
    fileSystem.failOn(path, EEXIST);
    NASConfig config = smbShare();
    config.authMethod = AuthMethod::guest;
    const auto mounted = finish(engine.mountSMB(config));
    EXPECT_TRUE(mounted && mounted->has_value());
    EXPECT_EQ(launcher.children().size(), 1U);
}

TEST_F(SMBMountTest, OtherSharesOfTheSameServerPathAreUnmountedFirst) {
    struct Other {
        QString name;
        QString address = "192.0.2.10";
        QString share = "media";
        MountState state = MountState::Kind::mounted;
    };
    NASConfig config = smbShare();
    config.authMethod = AuthMethod::guest;
    store.add(config);
    std::map<QString, QUuid> ids;
    for (const Other& other :
         {Other{"stuck"}, Other{"twin"}, Other{"slash", "192.0.2.10", "/media"},
          Other{"server", "nas.local"}, Other{"idle", "192.0.2.10", "media", {}}}) {
        NASConfig record = smbShare();
        record.name = other.name;
        record.address = other.address;
        record.sharePath = other.share;
        store.add(record);
        ids[other.name] = record.id;
        appState.updateStatus(record.id, other.state, directoryUrl("/srv/" + other.name));
    }
    launcher.onLaunch = [](ScriptedChild& child) {
        child.exit(child.arguments.contains("/srv/stuck") ? 1 : 0);
    };
    const auto mounted = finish(engine.mountSMB(config));
    EXPECT_TRUE(mounted && mounted->has_value());
    EXPECT_EQ(launcher.commandLines().first(2),
              (QStringList{"/usr/sbin/diskutil unmount /srv/stuck",
                           "/usr/sbin/diskutil unmount /srv/twin"}));
    EXPECT_EQ(launcher.children().size(), 3U);
    EXPECT_EQ(appState.status(ids["twin"])->mountState, MountState::Kind::idle);
    EXPECT_EQ(appState.status(ids["stuck"])->mountState, MountState::Kind::mounted);
    EXPECT_EQ(appState.status(ids["slash"])->mountState, MountState::Kind::mounted);
}

TEST_F(SMBMountTest, AFailedToolLeavesTheDirectory) {
    answers["/sbin/mount_smbfs"] = {68, "", "no such share\n"};
    NASConfig config = smbShare();
    config.authMethod = AuthMethod::guest;
    config.name = "films/old";
    const auto mounted = finish(engine.mountSMB(config));
    ASSERT_TRUE(mounted && !mounted->has_value());
    EXPECT_EQ(mounted->error(),
              HarbrixError::mountFailed("mount_smbfs exited with code 68: no such share"));
    EXPECT_EQ(fileSystem.kindOf("/home/ann/HarbrixVolumes/films/old"), FileSystem::Kind::Directory);
}

} // namespace
} // namespace harbrix
