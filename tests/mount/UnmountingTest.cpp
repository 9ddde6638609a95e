#include "EngineFixture.h"

#include <condition_variable>
#include <mutex>

namespace harbrix {
namespace {

class UnmountTest : public EngineTest {};

TEST_F(UnmountTest, RemovesEmptyDirectoriesOfTheProgramOnly) {
    struct Row {
        QString path;
        UnmountMode mode;
        int code;
        QString words;
        bool remains;
    };
    const QString volumes = "/home/ann/HarbrixVolumes";
    fileSystem.addFile(volumes + "/full/file");
    const std::vector<Row> rows{
        {volumes + "/a b", UnmountMode::Plain, 0, "unmount ", false},
        {volumes + "/a", UnmountMode::Force, 0, "unmount force ", false},
        {volumes + "Old", UnmountMode::Plain, 0, "unmount ", false}, // a plain text prefix
        {volumes + "/full", UnmountMode::Plain, 0, "unmount ", true},
        {volumes + "/b", UnmountMode::Plain, 1, "unmount ", true},
        {"/srv/custom", UnmountMode::Plain, 0, "unmount ", true},
    };
    for (const Row& row : rows) {
        fileSystem.addDirectory(row.path);
        answers["/usr/sbin/diskutil"] = {row.code, "not this", " busy \n"};
        const auto unmounted = finish(engine.unmount(directoryUrl(row.path), row.mode));
        ASSERT_TRUE(unmounted);
        EXPECT_EQ(launcher.commandLines().last(), "/usr/sbin/diskutil " + row.words + row.path);
        EXPECT_EQ(fileSystem.exists(row.path), row.remains) << row.path.toStdString();
        EXPECT_EQ(unmounted->has_value(), row.code == 0);
        if (!unmounted->has_value()) {
            EXPECT_EQ(unmounted->error(),
                      HarbrixError::unmountFailed("diskutil unmount exited with code 1: busy"));
        }
    }
}

TEST_F(UnmountTest, Ping) {
    NASConfig config = smbShare();
    launcher.onLaunch = [this](ScriptedChild& child) { child.exitAfter(0.25s, 0); };
    std::optional<Result<Seconds>> answer;
    TaskScope scope;
    scope.launch(keepResult(engine.ping(config), &answer));
    scheduler.advance(1s);
    ASSERT_TRUE(answer && answer->has_value());
    EXPECT_EQ(**answer, 0.25s);
    EXPECT_EQ(launcher.commandLines(), QStringList{"/usr/bin/ping -c 1 -W 3 192.0.2.10"});

    launcher.onLaunch = [](ScriptedChild& child) { child.exit(2); };
    EXPECT_EQ(finish(engine.ping(config))->error(),
              HarbrixError::connectionFailed("Ping to 192.0.2.10 failed (exit code 2)"));

    launcher.onLaunch = nullptr;
    answer.reset();
    scope.launch(keepResult(engine.ping(config), &answer));
    scheduler.advance(4.9s);
    EXPECT_FALSE(answer);
    scheduler.advance(0.1s);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->error(), HarbrixError::timeout("Process /usr/bin/ping timed out after 5s"));

    launcher.launchErrors["/usr/bin/ping"] = {2, "No such file or directory"};
    EXPECT_EQ(finish(engine.ping(config))->error().kind(), HarbrixError::Case::mountFailed);
}

TEST_F(UnmountTest, VolumeIsMounted) {
    fileSystem.mount("/srv/smb", "smbfs");
    fileSystem.mount("/srv/nfs", "nfs");
    fileSystem.mount("/srv/SMB", "SMBFS");
    fileSystem.mount("/srv/disk", "ext4");
    fileSystem.mount("/srv/dead", "smbfs");
    fileSystem.killMount("/srv/dead");
    fileSystem.addDirectory("/srv/smb/inside");
    const std::vector<std::pair<QString, bool>> rows{
        {"/srv/smb", true},   {"/srv/smb/inside", true}, {"/srv/nfs", true},    {"/srv/SMB", false},
        {"/srv/disk", false}, {"/srv/dead", false},      {"/srv/absent", false}};
    for (const auto& [path, expected] : rows) {
        EXPECT_EQ(finish(engine.volumeIsMounted(path)), expected) << path.toStdString();
        EXPECT_EQ(engine.isVolumeMounted(path), expected) << path.toStdString();
    }
}

/// A file system of which every look at a path waits until the test lets it go.
class HangingFileSystem final : public FileSystem {
public:
    ~HangingFileSystem() override { release(); }
    void release() {
        const std::scoped_lock lock(m_mutex);
        m_released = true;
        m_changed.notify_all();
    }
    [[nodiscard]] int looks() const {
        const std::scoped_lock lock(m_mutex);
        return m_looks;
    }

    [[nodiscard]] Kind kindOf(const QString&) const override { return Kind::Directory; }
    [[nodiscard]] std::optional<QString> typeName(const QString&) const override {
        std::unique_lock lock(m_mutex);
        ++m_looks;
        m_changed.wait(lock, [this] { return m_released; });
        return QStringLiteral("ext4");
    }
    [[nodiscard]] Result<void, SystemError> createDirectories(const QString&) override {
        return {};
    }
    Result<void, SystemError> removeEmptyDirectory(const QString&) override { return {}; }
    [[nodiscard]] std::vector<MountEntry> mountTable() const override {
        return {{"/", "ext4", "disk", false}, {"/srv/a", "fuse.smbfs", "//h/a", false}};
    }

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    mutable int m_looks = 0;
    bool m_released = false;
};

TEST(VolumeProbe, TheMountTableDecidesWhereTheServerDoesNotAnswer) {
    HangingFileSystem fileSystem;
    ManualScheduler scheduler;
    VolumeProbe probe(fileSystem, scheduler);
    TaskScope scope;
    std::optional<bool> share;
    std::optional<bool> local;
    scope.launch(keepResult(probe.isMounted("/srv/a/inside"), &share));
    scope.launch(keepResult(probe.isMounted("/srv/ab"), &local));
    ASSERT_TRUE(waitUntil([&] { return fileSystem.looks() == 2; }));
    EXPECT_FALSE(share);
    scheduler.advance(VolumeProbe::limit);
    EXPECT_EQ(share, true);
    EXPECT_EQ(local, false);

    share.reset(); // while the first look hangs, none is added
    scope.launch(keepResult(probe.isMounted("/srv/a/inside"), &share));
    EXPECT_EQ(share, true);
    EXPECT_EQ(fileSystem.looks(), 2);

    fileSystem.release();
    const auto looksAgain = [&] {
        share.reset();
        scope.launch(keepResult(probe.isMounted("/srv/a/inside"), &share));
        return fileSystem.looks() > 2;
    };
    EXPECT_TRUE(waitUntil(looksAgain));
    EXPECT_TRUE(waitUntil([&] { return share == false; }));
}

TEST(MountTable, FindsTheTopmostMountOfAPath) {
    const std::vector<MountEntry> table{{"/", "ext4", "disk", false},
                                        {"/srv/a", "ext4", "below", false},
                                        {"/srv/a", "fuse.smbfs", "//h/a", false},
                                        {"/srv/a/b", "nfs4", "h:/b", false},
                                        {"/mnt", "fuse.sshfs", "h:", false}};
    const std::vector<std::pair<QString, bool>> rows{
        {"/srv/a", true},   {"/srv/a/", true}, {"/srv/a/x", true}, {"/srv/a/b/c", true},
        {"/srv/ab", false}, {"/srv", false},   {"/mnt/x", false},  {"relative", false}};
    for (const auto& [path, expected] : rows)
        EXPECT_EQ(isOnNetworkMount(path, table), expected) << path.toStdString();
}

} // namespace
} // namespace harbrix
