#include "common/MountTable.h"

#include <gtest/gtest.h>

#include <stdlib.h>

#include <filesystem>

namespace harbrix {
namespace {

constexpr std::string_view table =
    "27 1 254:0 / / rw,relatime - ext4 /dev/vda rw\n"
    "42 27 0:39 / /home/ann/My\\040Share rw,nosuid,nodev shared:1 master:2 - fuse.smbfs "
    "//ann@nas/Film\\040K\\303\\244se rw,user_id=1000,group_id=1000\n"
    "43 27 0:40 / /mnt/tab\\011back\\134slash ro - nfs4 nas:/x rw,vers=4.2\n"
    "44 27 0:41 / /mnt/plain rw - fuse none rw,user_id=0\n"
    "45 27 0:42 / /mnt/plain rw - tmpfs upper rw\n"
    "46 27 0:43 / /mnt/no-options rw - tmpfs only\n"
    "damaged line\n"
    "47 27 nonsense / /mnt/bad rw - tmpfs x rw\n";

TEST(MountTable, ReadsEscapesOptionalFieldsAndNumbers) {
    const MountTable mounts = MountTable::parse(table);
    ASSERT_EQ(mounts.entries().size(), 6U);
    const MountEntry* share = mounts.at("/home/ann/My Share");
    ASSERT_TRUE(share);
    EXPECT_EQ(share->source, "//ann@nas/Film K\303\244se");
    EXPECT_EQ(share->deviceMinor, 39U);
    EXPECT_TRUE(share->isFuse());
    EXPECT_EQ(share->subtype(), "smbfs");
    EXPECT_EQ(share->fuseOwner(), 1000U);
    const MountEntry* nfs = mounts.at("/mnt/tab\tback\\slash");
    ASSERT_TRUE(nfs);
    EXPECT_FALSE(nfs->isFuse());
    EXPECT_EQ(nfs->subtype(), "");
    EXPECT_FALSE(nfs->fuseOwner());
}

TEST(MountTable, FindsTheUppermostMountAndOnlyExactPaths) {
    const MountTable mounts = MountTable::parse(table);
    ASSERT_TRUE(mounts.at("/mnt/plain"));
    EXPECT_EQ(mounts.at("/mnt/plain")->source, "upper");
    EXPECT_FALSE(mounts.at("/mnt/plain/below"));
    EXPECT_FALSE(mounts.at("/mnt/pla"));
}

TEST(MountTable, AMountPointIsFoundWithoutBeingTouched) {
    char folder[] = "/tmp/harbrix-table-XXXXXX";
    ASSERT_TRUE(::mkdtemp(folder));
    const std::string base = std::filesystem::canonical(folder);
    std::filesystem::create_directory_symlink(base, base + "/link");
    std::filesystem::create_directory(base + "/plain");
    // Nothing exists at "dead": whoever looks at it itself fails, as on a mount whose daemon is
    // gone.
    const MountTable mounts =
        MountTable::parse("9 1 0:9 / " + base + "/dead rw - fuse.smbfs //nas/x rw\n");
    struct Case {
        std::string path;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {base + "/dead", base + "/dead"},
        {base + "/dead///", base + "/dead"},
        {base + "/link/dead", base + "/dead"},
        {base + "/plain/../dead", base + "/dead"},
        {base + "/link/plain/", base + "/plain"},
        {base + "/plain/.", base + "/plain"},
        {base + "/link", base},
        {base + "/none", std::nullopt},
        {"/", "/"},
        {"", std::nullopt},
    };
    for (const Case& c : cases)
        EXPECT_EQ(canonicalMountPath(c.path, mounts), c.expected) << c.path;
    std::filesystem::remove_all(base);
}

} // namespace
} // namespace harbrix
