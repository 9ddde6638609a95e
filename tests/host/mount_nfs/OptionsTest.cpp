#include "mount_nfs/program/Options.h"

#include <gtest/gtest.h>

using namespace harbrix::nfs;

namespace {

TEST(Options, TheProgramsOwnCommandLine) {
    const auto options =
        parseOptions({"-o", "vers=4,tcp,noresvport,ro", "192.0.2.10:/export/media", "/mnt"});
    ASSERT_TRUE(options) << options.error();
    EXPECT_TRUE(options->readOnly);
    EXPECT_FALSE(options->minorVersion);
    EXPECT_EQ(options->remote.host, "192.0.2.10");
    EXPECT_EQ(options->remote.path, (std::vector<std::string>{"export", "media"}));
    EXPECT_EQ(options->mountPoint, "/mnt");
    EXPECT_EQ(options->kernelOptions, "vers=4,tcp,noresvport,ro");
}

TEST(Options, RemotesOfEveryForm) {
    struct Case {
        const char* text;
        const char* host; ///< Null: refused.
        std::vector<std::string> path;
    };
    const Case cases[] = {
        {"nas:/", "nas", {}},
        {"nas:/a//./b/", "nas", {"a", "b"}},
        {"nas:media", "nas", {"media"}},
        {"[fe80::1%eth0]:/x", "fe80::1%eth0", {"x"}},
        {"fe80::1:/x", "fe80::1", {"x"}},
        {"nas:/a:/b", "nas", {"a:", "b"}},
        {"nas", nullptr, {}},
        {":/x", nullptr, {}},
        {"nas:", nullptr, {}},
        {"[::1]/x", nullptr, {}},
        {"nas:/a/../b", nullptr, {}},
    };
    for (const Case& each : cases) {
        const auto remote = parseRemote(each.text);
        ASSERT_EQ(remote.has_value(), each.host != nullptr) << each.text;
        if (!remote)
            continue;
        EXPECT_EQ(remote->host, each.host) << each.text;
        EXPECT_EQ(remote->path, each.path) << each.text;
        EXPECT_EQ(remote->source, each.text);
    }
}

TEST(Options, WhatIsWrongIsRefused) {
    for (const char* list :
         {"vers=3", "vers=5", "udp", "proto=udp", "sec=krb5", "port=0", "port=65536", "port=2049x",
          "rsize=1", "wsize=2097152", "memory=1", "nonsense", "vers"})
        EXPECT_FALSE(parseOptions({"-o", list, "nas:/x", "/mnt"})) << list;
    EXPECT_FALSE(parseOptions({"nas:/x"}));
    EXPECT_FALSE(parseOptions({"-o", "nas:/x", "/mnt"}));
    EXPECT_FALSE(parseOptions({"-v", "nas:/x", "/mnt"}));
}

} // namespace
