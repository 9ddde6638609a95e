#include "platform/FileSystem.h"

#include "base/UniqueDescriptor.h"
#include "platform/linux/MountInfo.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace harbrix {
namespace {

TEST(MountInfoTest, ReadsEveryFormOfRow) {
    const std::pair<const char*, std::vector<MountInfoRow>> cases[] = {
        {"", {}},
        {"29 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda rw\n",
         {{29, {QStringLiteral("/"), QStringLiteral("ext4"), QStringLiteral("/dev/vda"), false}}}},
        // Several optional fields, and none.
        {"5 1 0:4 / /a rw shared:1 master:2 propagate_from:3 - tmpfs tmpfs rw",
         {{5, {QStringLiteral("/a"), QStringLiteral("tmpfs"), QStringLiteral("tmpfs"), false}}}},
        {"5 1 0:4 / /a ro - tmpfs none rw\n",
         {{5, {QStringLiteral("/a"), QStringLiteral("tmpfs"), QStringLiteral("none"), true}}}},
        // Read-only as a whole, though this mount of it is not.
        {"5 1 0:4 / /a rw,errors=ro - tmpfs none ro,size=4k\n",
         {{5, {QStringLiteral("/a"), QStringLiteral("tmpfs"), QStringLiteral("none"), true}}}},
        {"5 1 0:4 / /a rw,errors=ro - tmpfs none rw,x=ro\n",
         {{5, {QStringLiteral("/a"), QStringLiteral("tmpfs"), QStringLiteral("none"), false}}}},
        {"7 1 0:50 / /home/u/My\\040NAS\\011\\012\\134040 rw - fuse.smbfs //u@h/My\\040Share rw\n",
         {{7,
           {QStringLiteral("/home/u/My NAS\t\n\\040"), QStringLiteral("fuse.smbfs"),
            QStringLiteral("//u@h/My Share"), false}}}},
        {"7 1 0:50 / /\xe6\x8c\x82\\\\04 rw - nfs4 h:/x rw\n",
         {{7,
           {QStringLiteral("/挂\\\\04"), QStringLiteral("nfs4"), QStringLiteral("h:/x"), false}}}},
        // A mount point named like the separator.
        {"7 1 0:50 / - rw - tmpfs none rw\n",
         {{7, {QStringLiteral("-"), QStringLiteral("tmpfs"), QStringLiteral("none"), false}}}},
        {"not a row\n7 1 0:50 / /x rw\n7 1 0:50 / /x rw - tmpfs\nx 1 0:5 / /x rw - a b c\n", {}},
    };
    for (const auto& [text, rows] : cases)
        EXPECT_EQ(parseMountInfo(text), rows) << text;
}

TEST(MountInfoTest, NamesNetworkFileSystemsByTheirFamily) {
    struct Case {
        quint32 magic;
        const char* kernelType;
        const char* name;
    };
    const Case cases[] = {
        {0xFF534D42, "cifs", "smbfs"},
        {0xFE534D42, "smb3", "smbfs"},
        {0xFF534D42, "", "smbfs"},
        {0, "cifs", "smbfs"},
        {0x6969, "nfs", "nfs"},
        {0x6969, "nfs4", "nfs"},
        {0, "nfs4", "nfs"},
        {0x65735546, "fuse.smbfs", "smbfs"},
        {0x65735546, "fuse.nfs", "nfs"},
        {0x65735546, "fuse.sshfs", "fuse.sshfs"},
        {0x65735546, "fuse.smbfs2", "fuse.smbfs2"},
        {0x65735546, "fuse.rclone-mount", "fuse.rclone-mou"},
        {0xEF53, "ext4", "ext4"},
        {0xEF53, "SMBFS", "SMBFS"},
    };
    for (const Case& row : cases)
        EXPECT_EQ(fileSystemTypeName(row.magic, QString::fromLatin1(row.kernelType)),
                  QString::fromLatin1(row.name));
}

class FileSystemTest : public testing::Test {
protected:
    QString at(const char* name) const { return directory.filePath(QString::fromUtf8(name)); }

    QTemporaryDir directory;
    std::unique_ptr<FileSystem> files = FileSystem::create();
};

TEST_F(FileSystemTest, MakesAndRemovesDirectoriesAndNothingElse) {
    ASSERT_TRUE(files->createDirectories(at("a/b\nc/挂")));
    ASSERT_TRUE(files->createDirectories(at("a/b\nc/挂")));
    EXPECT_EQ(files->kindOf(at("a/b\nc/挂")), FileSystem::Kind::Directory);
    QFile file(at("a/file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(QFile::link(at("a"), at("link")));
    ASSERT_TRUE(QFile::link(at("nowhere"), at("dangling")));
    EXPECT_EQ(files->kindOf(at("a/file")), FileSystem::Kind::Other);
    EXPECT_EQ(files->kindOf(at("link")), FileSystem::Kind::Directory);
    EXPECT_FALSE(files->exists(at("dangling")));

    const auto codeOf = [](const Result<void, SystemError>& done) {
        return done ? 0 : done.error().code;
    };
    EXPECT_EQ(codeOf(files->createDirectories(at("a/file"))), ENOTDIR);
    EXPECT_EQ(codeOf(files->createDirectories(at("a/file/below"))), ENOTDIR);
    EXPECT_EQ(codeOf(files->removeEmptyDirectory(at("a"))), ENOTEMPTY);
    EXPECT_EQ(codeOf(files->removeEmptyDirectory(at("a/file"))), ENOTDIR);
    EXPECT_EQ(codeOf(files->removeEmptyDirectory(at("link"))), ENOTDIR);
    EXPECT_EQ(codeOf(files->removeEmptyDirectory(at("missing"))), ENOENT);
    EXPECT_EQ(codeOf(files->removeEmptyDirectory(at("a/b\nc/挂"))), 0);
    EXPECT_TRUE(files->exists(at("a/file")));
}

TEST_F(FileSystemTest, NamesTheTypeThatTheMountTableNames) {
    EXPECT_EQ(files->typeName(QStringLiteral("/proc/self")), QStringLiteral("proc"));
    EXPECT_FALSE(files->typeName(at("missing")));
    const auto table = files->mountTable();
    const auto isProc = [](const MountEntry& entry) {
        return entry.mountPoint == QLatin1String("/proc") &&
               entry.fileSystemType == QLatin1String("proc");
    };
    EXPECT_TRUE(std::ranges::any_of(table, isProc));
}

/// A FUSE mount whose server never answers, and which dies when the server's end is closed.
class SilentFuseMount {
public:
    explicit SilentFuseMount(const QString& path) : m_path(QFile::encodeName(path)) {
        const QByteArray options =
            "fd=" + QByteArray::number(m_server.get()) + ",rootmode=40000,user_id=0,group_id=0";
        m_isMounted = m_server && ::mkdir(m_path.constData(), 0700) == 0 &&
                      ::mount("//user@host/share", m_path.constData(), "fuse.smbfs", 0,
                              options.constData()) == 0;
    }
    ~SilentFuseMount() {
        m_server.reset();
        if (m_isMounted)
            ::umount2(m_path.constData(), MNT_DETACH);
    }
    SilentFuseMount(const SilentFuseMount&) = delete;
    SilentFuseMount& operator=(const SilentFuseMount&) = delete;

    [[nodiscard]] bool isMounted() const { return m_isMounted; }
    void killServer() { m_server.reset(); }

private:
    QByteArray m_path;
    UniqueDescriptor m_server{::open("/dev/fuse", O_RDWR | O_CLOEXEC)};
    bool m_isMounted = false;
};

TEST_F(FileSystemTest, AHungShareKeepsItsTypeAndADeadOneHasNone) {
    const QString path = at("my share");
    SilentFuseMount share(path);
    if (!share.isMounted())
        GTEST_SKIP() << "needs root and /dev/fuse";
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(files->typeName(path), QStringLiteral("smbfs"));
    EXPECT_LT(elapsed.restart(), 3000);
    // The first question is still open, so no second wait is made.
    EXPECT_EQ(files->typeName(path), QStringLiteral("smbfs"));
    EXPECT_LT(elapsed.elapsed(), 500);

    share.killServer();
    std::optional<QString> type = files->typeName(path);
    while (type && elapsed.elapsed() < 5000) {
        ::usleep(1000);
        type = files->typeName(path);
    }
    EXPECT_FALSE(type);
    EXPECT_EQ(files->kindOf(path), FileSystem::Kind::Missing);
    const auto table = files->mountTable();
    const auto row = std::ranges::find(table, path, &MountEntry::mountPoint);
    ASSERT_NE(row, table.end());
    EXPECT_EQ(row->source, QStringLiteral("//user@host/share"));
}

} // namespace
} // namespace harbrix
