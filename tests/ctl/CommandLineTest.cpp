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
        {"settings", "settings needs one of list, get, set, reset"},
        {"settings put A 1", "settings needs one of"},
        {"settings get", "needs the key"},
        {"settings set A", "needs a value"},
        {"settings set A 1 2", "unexpected argument '2'"},
        {"settings set --json A 1", "Unknown option 'json'"},
        {"log", "log needs one of show, export, clear"},
        {"log export", "needs the name of a file"},
        {"log show --lines -1", "--lines takes a number"},
        {"log show --lines many", "--lines takes a number"},
        {"log show --level notice", "--level takes debug|info|warning|error|critical"},
        {"log clear now", "unexpected argument 'now'"},
        {"import", "needs the name of a file"},
        {"import a b", "unexpected argument 'b'"},
        {"export a --dry-run", "Unknown option 'dry-run'"},
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

TEST(CommandLine, TheCommandsAboutTheProgramTakeTheirOptions) {
    const std::vector<std::pair<QString, Invocation>> table{
        {"settings list --json", {.command = Command::SettingsList, .json = true}},
        {"settings get a.b", {.command = Command::SettingsGet, .key = "a.b"}},
        {"settings set a.b 12", {.command = Command::SettingsSet, .key = "a.b", .value = "12"}},
        {"settings set a.b -- -1", {.command = Command::SettingsSet, .key = "a.b", .value = "-1"}},
        {"settings reset a.b", {.command = Command::SettingsReset, .key = "a.b"}},
        {"log show", {.command = Command::LogShow}},
        {"log show --follow --lines 0 --level warning",
         {.command = Command::LogShow, .follow = true, .level = 2, .lines = 0}},
        {"log export --force f", {.command = Command::LogExport, .file = "f", .force = true}},
        {"log clear", {.command = Command::LogClear}},
        {"export", {.command = Command::Export}},
        {"export f --with-passwords",
         {.command = Command::Export, .file = "f", .withPasswords = true}},
        {"import --dry-run -", {.command = Command::Import, .file = "-", .dryRun = true}},
    };
    for (const auto& [words, invocation] : table) {
        const auto parsed = parse(words);
        ASSERT_TRUE(parsed) << words.toStdString() << parsed.error().text.toStdString();
        EXPECT_EQ(*parsed, invocation) << words.toStdString();
    }
}

TEST(CommandLine, HelpTellsOperandsAndOptions) {
    const auto help = parse("settings set --help");
    ASSERT_FALSE(help);
    EXPECT_EQ(help.error().code, Succeeded);
    EXPECT_TRUE(help.error().text.startsWith("Usage: harbrixctl settings set KEY VALUE ["));
    EXPECT_EQ(parse("log --help").error().code, Succeeded);
}

} // namespace
} // namespace harbrix
