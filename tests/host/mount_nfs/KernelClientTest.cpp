#include "mount_nfs/program/KernelClient.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

using namespace harbrix::nfs;

namespace {

namespace fs = std::filesystem;

/// The tools are scripts in a folder of the test's own; they write their arguments down.
class KernelClientTest : public testing::Test {
protected:
    KernelClientTest() {
        std::string pattern = (fs::temp_directory_path() / "harbrix-kernel-XXXXXX").string();
        folder = mkdtemp(pattern.data());
        client.mountTool = folder / "mount.nfs4";
        client.loadTool = folder / "modprobe";
        client.fileSystems = folder / "filesystems";
        write(client.fileSystems, "nodev\tsysfs\nnodev\tnfs\n");
    }
    ~KernelClientTest() override { fs::remove_all(folder); }

    static void write(const fs::path& path, const std::string& text) {
        std::ofstream(path) << text;
    }
    void script(const fs::path& path, const std::string& lines) const {
        write(path, "#!/bin/sh\necho \"$*\" >>" + log().string() + "\n" + lines + "\n");
        fs::permissions(path, fs::perms::owner_all);
    }
    [[nodiscard]] fs::path log() const { return folder / "log"; }
    [[nodiscard]] std::string logged() const {
        std::ostringstream text;
        text << std::ifstream(log()).rdbuf();
        return text.str();
    }
    static Options options(const std::string& list) {
        return parseOptions({"-o", list, "nas:/media", "/mnt"}).value();
    }

    fs::path folder;
    KernelClient client;
};

TEST_F(KernelClientTest, IsForRootWhereToolAndKernelAreThere) {
    EXPECT_FALSE(client.isAvailable(0)) << "no tool";
    script(client.mountTool, "exit 0");
    EXPECT_FALSE(client.isAvailable(0)) << "neither the kernel nor a module has it";
    script(client.loadTool, "exit 1");
    EXPECT_FALSE(client.isAvailable(0)) << "the module does not load";
    script(client.loadTool, "printf 'nodev\\tnfs4\\n' >>" + client.fileSystems);
    EXPECT_FALSE(client.isAvailable(1000));
    EXPECT_TRUE(client.isAvailable(0)) << "the module loads";
    EXPECT_TRUE(client.isAvailable(0));
    EXPECT_EQ(logged(), "-q nfsv4\n-q nfsv4\n") << "loaded once it is not loaded again";
    EXPECT_FALSE(client.isAvailable(1000));
}

TEST_F(KernelClientTest, HandsOverWhatWasAskedFor) {
    script(client.mountTool, "exit 0");
    EXPECT_EQ(client.mount(options("vers=4,tcp,noresvport,ro,memory=8")), std::nullopt);
    EXPECT_EQ(logged(), "nas:/media /mnt -o vers=4,tcp,noresvport,ro\n");
}

TEST_F(KernelClientTest, TriesAReservedPortWhereOthersAreRefused) {
    script(client.mountTool, "case $* in *noresvport*) echo refused >&2; exit 32;; esac");
    EXPECT_EQ(client.mount(options("vers=4,noresvport")), std::nullopt);
    EXPECT_EQ(logged(), "nas:/media /mnt -o vers=4,noresvport\nnas:/media /mnt -o vers=4\n");
}

TEST_F(KernelClientTest, TellsWhatTheToolSays) {
    script(client.mountTool, "echo mount.nfs4: no route >&2; exit 32");
    EXPECT_EQ(client.mount(options("vers=4")), "mount.nfs4: no route");
    script(client.mountTool, "exit 1");
    EXPECT_EQ(client.mount(options("vers=4")), "mount.nfs4 failed");
}

} // namespace
