#include "mount_smbfs/MountArguments.h"
#include "mount_smbfs/NameMapping.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <random>

namespace harbrix {
namespace {

template <typename Value>
int errorOf(const std::expected<Value, int>& outcome) {
    return outcome ? 0 : outcome.error();
}

TEST(ShareAddress, TakesApart) {
    struct Case {
        std::string text;
        std::string domain, user, host;
        std::optional<int> port;
        std::string share, folder;
        std::string shown;
    };
    const Case cases[] = {
        {"//ann@nas/data", "", "ann", "nas", {}, "data", "", "//ann@nas/data"},
        {"//nas/data/", "", "", "nas", {}, "data", "", "//nas/data"},
        {"//ann@home@nas:4450/data", "", "ann@home", "nas", 4450, "data", "",
         "//ann@home@nas:4450/data"},
        {"//WG;ann@nas/d", "WG", "ann", "nas", {}, "d", "", "//ann@nas/d"},
        {"//WG\\ann@nas/d", "WG", "ann", "nas", {}, "d", "", "//ann@nas/d"},
        {"//a%40b@nas/d", "", "a%40b", "nas", {}, "d", "", "//a%40b@nas/d"},
        {"//ann@192.0.2.10/media/Film%20Club",
         "",
         "ann",
         "192.0.2.10",
         {},
         "media",
         "Film Club",
         "//ann@192.0.2.10/media/Film Club"},
        {"//ann@[2001:db8::1]:4450/d", "", "ann", "2001:db8::1", 4450, "d", "",
         "//ann@[2001:db8::1]:4450/d"},
        {"//ann@2001:db8::1/d", "", "ann", "2001:db8::1", {}, "d", "", "//ann@[2001:db8::1]/d"},
        {"//fe80::1%eth0/d", "", "", "fe80::1%eth0", {}, "d", "", "//[fe80::1%eth0]/d"},
        {"//nas/K%C3%A4se/50%/a%2/%zz",
         "",
         "",
         "nas",
         {},
         "K\303\244se",
         "50%/a%2/%zz",
         "//nas/K\303\244se/50%/a%2/%zz"},
        {"//nas//d///e", "", "", "nas", {}, "d", "e", "//nas/d/e"},
        {"//nas/a%00b", "", "", "nas", {}, "a%00b", "", "//nas/a%00b"},
    };
    for (const Case& c : cases) {
        const auto address = ShareAddress::parse(c.text);
        ASSERT_TRUE(address) << c.text << ": " << address.error();
        EXPECT_EQ(address->domain, c.domain) << c.text;
        EXPECT_EQ(address->user, c.user) << c.text;
        EXPECT_EQ(address->host, c.host) << c.text;
        EXPECT_EQ(address->port.has_value(), c.port.has_value()) << c.text;
        EXPECT_EQ(address->port.value_or(0), c.port.value_or(0)) << c.text;
        EXPECT_EQ(address->share, c.share) << c.text;
        EXPECT_EQ(address->folder, c.folder) << c.text;
        EXPECT_EQ(address->displayName(), c.shown) << c.text;
    }
}

TEST(ShareAddress, RefusesWithoutRepeatingAPassword) {
    for (const char* text :
         {"", "nas/data", "/nas/data", "//", "///data", "//nas", "//nas/", "//ann@/data",
          "//ann:geheim@nas/data", "//ann:geheim@home@nas/data", "//nas:/data", "//nas:0/data",
          "//nas:65536/data", "//nas:12x/data", "//[::1/data", "//[::1]x/data", "//nas/../data",
          "//nas/data/.", "//nas/data/%2E%2E"}) {
        const auto address = ShareAddress::parse(text);
        ASSERT_FALSE(address) << text;
        EXPECT_FALSE(address.error().empty()) << text;
        EXPECT_EQ(address.error().find("geheim"), std::string::npos) << text;
    }
}

TEST(MountArguments, TakesApart) {
    const auto parsed = MountArguments::parse({"-N", "-o", "ro,port=4450", "//g@nas/d", "/mnt"});
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->access, MountAccess::readOnly);
    EXPECT_EQ(parsed->password, PasswordSource::none);
    EXPECT_EQ(parsed->share.port, 4450);
    EXPECT_EQ(parsed->mountPoint, "/mnt");
    const auto behindDashes = MountArguments::parse({"-oro", "--", "//nas/d", "-dir"});
    ASSERT_TRUE(behindDashes);
    EXPECT_EQ(behindDashes->mountPoint, "-dir");
    const auto plain = MountArguments::parse({"//nas/d", "/mnt", "-o", ",rw,"});
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->access, MountAccess::readWrite);
    EXPECT_EQ(plain->password, PasswordSource::prompt);
}

TEST(MountArguments, RefusesWhatItDoesNotKnow) {
    const std::vector<std::string> cases[] = {
        {},
        {"//nas/d"},
        {"//nas/d", "/mnt", "more"},
        {"-x", "//nas/d", "/mnt"},
        {"-o"},
        {"-o", "soft", "//nas/d", "/mnt"},
        {"-o", "port=", "//nas/d", "/mnt"},
        {"-o", "port=70000", "//nas/d", "/mnt"},
        {"-o", "port=1", "//nas:2/d", "/mnt"},
        {"nas:/d", "/mnt"},
    };
    for (const auto& arguments : cases)
        EXPECT_FALSE(MountArguments::parse(arguments)) << testing::PrintToString(arguments);
}

TEST(NameMapping, CarriesWhatSmbForbids) {
    struct Case {
        std::string local, server;
    };
    const Case cases[] = {
        {"plain \303\244", "plain \303\244"},
        {"a:b", "a\357\200\242b"},
        {"\"*<>?\\|",
         "\357\200\240\357\200\241\357\200\243\357\200\244\357\200\245\357\200\246\357\200\247"},
        {"end.", "end\357\200\251"},
        {"end ", "end\357\200\250"},
        {".in.side ", ".in.side\357\200\250"},
        {"a\tb", "a\357\200\211b"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(nameForServer(c.local).value_or("error"), c.server) << c.local;
        EXPECT_EQ(nameFromServer(c.server), c.local);
    }
    // Private characters that are none of the mapping's stay.
    for (const char* name : {"\357\200\200", "\357\200\277", "\357\201\200", "\357\200"})
        EXPECT_EQ(nameFromServer(name), name);
}

TEST(NameMapping, RefusesWhatIsNotUtf8OrTooLong) {
    for (const char* name :
         {"\xff", "a\xc3", "\xc0\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xe0\x80\x80", "\x80"})
        EXPECT_EQ(errorOf(nameForServer(name)), EILSEQ) << name;
    EXPECT_EQ(errorOf(nameForServer(std::string(256, 'n'))), ENAMETOOLONG);
    EXPECT_TRUE(nameForServer(std::string(255, 'n')));
    EXPECT_EQ(errorOf(urlPath("a/\xff")), EILSEQ);
}

TEST(NameMapping, AnyNameComesBack) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string name;
        for (unsigned size = 1 + random() % 12; size > 0; --size)
            name += static_cast<char>(1 + random() % 127);
        EXPECT_EQ(nameFromServer(nameForServer(name).value_or("")), name);
        EXPECT_EQ(percentDecoded(urlEncoded(name)), name);
    }
}

TEST(NameMapping, MakesAUrlPath) {
    EXPECT_EQ(urlPath("").value_or("?"), "");
    EXPECT_EQ(urlPath("a b/50%/#?").value_or("?"), "/a%20b/50%25/%23%EF%80%A5");
}

} // namespace
} // namespace harbrix
