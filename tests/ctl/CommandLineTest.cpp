#include "ctl/CommandLine.h"

#include <QJsonArray>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

using Command = Invocation::Command;
using Password = Invocation::Password;

std::expected<Invocation, EarlyEnd> parse(const QString& words) {
    return parseCommandLine(("harbrixctl " + words).split(' ', Qt::SkipEmptyParts));
}

TEST(CommandLine, WrongUsageIsOneLineThatNamesTheFault) {
    const std::vector<std::pair<const char*, const char*>> table{
        {"", "a command is missing"},
        {"mountt Films", "unknown command 'mountt'"},
        {"--verbose list", "unknown option '--verbose'"},
        {"mount", "needs the name or id"},
        {"unmount A B", "unexpected argument 'B'"},
        {"list Films", "unexpected argument 'Films'"},
        {"list --yaml", "Unknown option 'yaml'"},
        {"mount --json Films", "Unknown option 'json'"},
        {"add --name A --address h", "--share is missing"},
        {"add --name A --address h --share s --protocol ftp", "--protocol takes smb|nfs"},
        {"add --name A --address h --share s --auth krb5", "--auth takes password|guest"},
        {"add --name A --address h --share s --smb-version 1", "--smb-version takes auto|2|3"},
        {"add --name A --address h --share s --binding wifi", "--binding takes"},
        {"add --name A --address h --share s --enabled --disabled", "exclude each other"},
        {"add --name A --address h --share s --password secret", "Unknown option 'password'"},
        {"add --name", "Missing value after '--name'"},
        {"edit Films", "nothing to change"},
        {"edit Films --read-only --read-write", "exclude each other"},
    };
    for (const auto& [words, fault] : table) {
        const auto parsed = parse(words);
        ASSERT_FALSE(parsed) << words;
        EXPECT_EQ(parsed.error().code, WrongUsage) << words;
        EXPECT_TRUE(parsed.error().text.contains(fault)) << parsed.error().text.toStdString();
        EXPECT_FALSE(parsed.error().text.contains('\n')) << words;
    }
}

TEST(CommandLine, AddTakesEverySetting) {
    const auto parsed =
        parse("add --name Films --address nas --share /media/Films --user ann --smb-version 3 "
              "--read-only --mount-point /mnt/films --disabled --binding combined --ip-range "
              "10.0.0.0/8 --ssid Home --ssid Attic --mount");
    ASSERT_TRUE(parsed);
    const QJsonObject expected{
        {"name", "Films"},
        {"address", "nas"},
        {"share", "/media/Films"},
        {"user", "ann"},
        {"smbVersion", "3"},
        {"readOnly", true},
        {"enabled", false},
        {"customMountPoint", "/mnt/films"},
        {"ipRange", "10.0.0.0/8"},
        {"bindingStrategy", "combined"},
        {"ssids", QJsonArray{"Home", "Attic"}},
    };
    EXPECT_EQ(parsed->settings, expected);
    EXPECT_TRUE(parsed->mountAfterwards);
    EXPECT_EQ(parsed->password, Password::Needed);
}

TEST(CommandLine, APasswordIsWantedOnlyWhereOneIsUsed) {
    const QString base = "add --name A --address h --share s ";
    const std::vector<std::pair<QString, Password>> table{
        {base, Password::Needed},
        {base + "--auth guest", Password::NotWanted},
        {base + "--protocol nfs", Password::NotWanted},
        {base + "--password-stdin", Password::FromStandardInput},
        {"edit A --user b", Password::NotWanted},
        {"edit A --ask-password", Password::FromTerminal},
        {"edit A --password-stdin", Password::FromStandardInput},
    };
    for (const auto& [words, password] : table) {
        const auto parsed = parse(words);
        ASSERT_TRUE(parsed) << words.toStdString();
        EXPECT_EQ(parsed->password, password) << words.toStdString();
    }
}

TEST(CommandLine, EditTurnsTheStoredFormsOn) {
    const auto parsed = parse("edit Films --binding ip-range --read-write --mount-point=");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->share, "Films");
    EXPECT_EQ(parsed->settings,
              (QJsonObject{
                  {"bindingStrategy", "ipRange"}, {"readOnly", false}, {"customMountPoint", ""}}));
}

} // namespace
} // namespace harbrix
