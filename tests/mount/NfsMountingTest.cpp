#include "EngineFixture.h"
#include "services/Text.h"

namespace harbrix {
namespace {

class NFSMountTest : public EngineTest {
protected:
    static NASConfig nfsShare() {
        NASConfig config = smbShare();
        config.protocol = NASProtocol::nfs;
        config.sharePath = "//export/Film Club";
        return config;
    }
};

struct NFSRow {
    MountEngine::ProcessResult first;
    bool hasSudo;
    MountEngine::ProcessResult second;
    bool triesSudo;
    std::optional<QString> text; ///< none: it ends mounted
};

TEST_F(NFSMountTest, RunsAndTheirOutcomes) {
    const QString denied = " Operation NOT permitted\n";
    const QString sudoText = text("nfs.error.sudoRequired");
    const QString usage = text("nfs.error.invalidArgument");
    const QString nfs1 = "mount_nfs exited with code 1: ";
    const std::vector<NFSRow> rows{
        {{0, "", ""}, true, {}, false, std::nullopt},
        {{1, "", denied}, true, {0, "", ""}, true, std::nullopt},
        {{1, "", "Permission denied"}, true, {0, "", ""}, true, std::nullopt},
        {{1, "", denied}, true, {1, "", "sudo: a password is required"}, true, sudoText},
        {{1, "", denied}, true, {1, "", "Permission denied"}, true, nfs1 + "Permission denied"},
        {{1, "", denied}, true, {32, " busy ", " "}, true, "mount_nfs exited with code 32: busy"},
        {{1, "", denied}, true, {64, "", "x"}, true, usage},
        {{1, "", denied}, false, {}, false, nfs1 + "Operation NOT permitted"},
        {{1, "", "not permitted, use sudo"}, false, {}, false, sudoText},
        {{1, "", "Use SUDO"}, true, {}, false, nfs1 + "Use SUDO"},
        {{1, denied, ""}, true, {}, false, nfs1 + "Operation NOT permitted"},
        {{1, "", "unknown host"}, true, {}, false, nfs1 + "unknown host"},
        {{2, "", denied}, true, {}, false, "mount_nfs exited with code 2: Operation NOT permitted"},
        {{64, "", "not permitted"}, true, {}, false, usage},
    };
    const QString words = "-o vers=4,tcp,noresvport 192.0.2.10://export/Film Club "
                          "/home/ann/HarbrixVolumes/media";
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const NFSRow& row = rows[i];
        ScriptedFileSystem files;
        if (row.hasSudo)
            files.addFile("/usr/bin/sudo");
        ScriptedProcessLauncher tools(scheduler);
        tools.onLaunch = [&](ScriptedChild& child) {
            const auto& result = child.executablePath == "/usr/bin/sudo" ? row.second : row.first;
            child.exit(result.exitCode, result.stdout_.toUtf8(), result.stderr_.toUtf8());
        };
        MountEngine mounter(keychain, store, appState, files, tools, scheduler, "/home/ann");
        const auto mounted = finish(mounter.mountNFS(nfsShare()));
        ASSERT_TRUE(mounted) << "row " << i;
        QStringList lines{"/sbin/mount_nfs " + words};
        if (row.triesSudo)
            lines << "/usr/bin/sudo -n /sbin/mount_nfs " + words;
        EXPECT_EQ(tools.commandLines(), lines) << "row " << i;
        if (row.text) {
            EXPECT_EQ(mounted->error(), HarbrixError::mountFailed(*row.text)) << "row " << i;
        } else {
            EXPECT_EQ(**mounted, QUrl("file:///home/ann/HarbrixVolumes/media/")) << "row " << i;
        }
    }
}

TEST_F(NFSMountTest, ReadOnlyLengthensTheOptions) {
    NASConfig config = nfsShare();
    config.mountOptions.readOnly = true;
    (void) finish(engine.mountNFS(config));
    EXPECT_EQ(launcher.latest().arguments.at(1), "vers=4,tcp,noresvport,ro");
    EXPECT_EQ(launcher.latest().arguments.size(), 4);
}

TEST_F(NFSMountTest, EndsBeforeTheTool) {
    NASConfig config = nfsShare();
    config.sharePath = "";
    fileSystem.mount("/home/ann/HarbrixVolumes/media", "nfs");
    const auto empty = finish(engine.mountNFS(config));
    EXPECT_EQ(empty->error(), HarbrixError::mountFailed(text("nfs.error.emptySharePath")));
    const auto mounted = finish(engine.mountNFS(nfsShare()));
    EXPECT_TRUE(mounted->has_value());
    EXPECT_EQ(launcher.commandLines(), QStringList());
    EXPECT_TRUE(secrets.calls().empty());
}

TEST_F(NFSMountTest, ASecondRunThatCannotStartIsTheError) {
    fileSystem.addFile("/usr/bin/sudo");
    answers["/sbin/mount_nfs"] = {1, "", "permission"};
    launcher.launchErrors["/usr/bin/sudo"] = {13, "Permission denied"};
    const auto mounted = finish(engine.mountNFS(nfsShare()));
    EXPECT_EQ(mounted->error(),
              HarbrixError::mountFailed("Failed to launch /usr/bin/sudo: Permission denied"));
}

} // namespace
} // namespace harbrix
