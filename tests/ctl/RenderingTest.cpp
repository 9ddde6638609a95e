#include "ctl/Rendering.h"

#include "ctl/PasswordInput.h"
#include "ctl/Table.h"

#include <gtest/gtest.h>

#include <clocale>

namespace harbrix {
namespace {

QJsonObject share(const char* state, const char* volume) {
    return {{"name", "Films"},
            {"enabled", true},
            {"state", state},
            {"volume", volume},
            {"mountPoint", "/mnt/Films"},
            {"error", QJsonObject{{"text", "Mount operation failed: no route"}}}};
}

TEST(Table, NamesCanNeitherBreakALineNorSteerTheTerminal) {
    EXPECT_EQ(visible("a\nb\tc\r"), "a\\nb\\tc\\r");
    EXPECT_EQ(visible(QStringLiteral("\x1b[2J")), "\\u{1b}[2J");
    EXPECT_EQ(visible(QStringLiteral("a\u202eb\u2028c")), "a\\u{202e}b\\u{2028}c");
    EXPECT_EQ(visible(QStringLiteral("Köln 映画 🎬")), QStringLiteral("Köln 映画 🎬"));
}

TEST(Table, WideCharactersTakeTwoColumns) {
    const std::string before = std::setlocale(LC_CTYPE, nullptr);
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    EXPECT_EQ(alignedTable({{"NAME", "STATE"}, {QStringLiteral("映画"), "idle"}, {"ab", ""}}),
              QStringLiteral("NAME  STATE\n映画  idle\nab\n"));
    std::setlocale(LC_CTYPE, before.c_str());
}

TEST(Rendering, MountIsJudgedByStateAndVolume) {
    const std::vector<std::tuple<const char*, const char*, ExitCode, const char*>> table{
        {"mounted", "present", Succeeded, "Films: mounted at /mnt/Films\n"},
        {"mounted", "missing", Failed, "check the user name, the password"},
        {"failed", "missing", Failed, "Films: Mount operation failed: no route\n"},
        {"failed", "present", Failed, "Films: Mount operation failed: no route\n"},
        {"idle", "missing", Failed, "not mounted, now idle"},
    };
    for (const auto& [state, volume, code, text] : table) {
        const Outcome outcome = mountOutcome(share(state, volume));
        EXPECT_EQ(outcome.code, code) << state << " " << volume;
        const QString said = code == Succeeded ? outcome.output : outcome.error;
        EXPECT_TRUE(said.contains(text)) << said.toStdString();
    }
}

TEST(Rendering, UnmountIsJudgedByStateAndVolume) {
    EXPECT_EQ(unmountOutcome(share("idle", "missing")).code, Succeeded);
    EXPECT_EQ(unmountOutcome(share("failed", "present")).code, Failed);
    const Outcome leftOver = unmountOutcome(share("idle", "present"));
    EXPECT_EQ(leftOver.code, Failed);
    EXPECT_TRUE(leftOver.error.contains("/mnt/Films"));
}

TEST(Rendering, MountAllSkipsWhatIsDisabledOrBelongsElsewhere) {
    QJsonObject disabled = share("failed", "missing");
    disabled["enabled"] = false;
    const QJsonArray fine{share("mounted", "present"), share("offline", "missing"), disabled};
    EXPECT_EQ(
        mountAllOutcome(fine),
        (Outcome{Succeeded, "Films: mounted at /mnt/Films\nFilms: left alone (offline)\n", ""}));
    QJsonArray failing = fine;
    failing.prepend(share("failed", "missing"));
    EXPECT_EQ(mountAllOutcome(failing).code, Failed);
}

TEST(PasswordInput, OneLineEndGoesAndNoOtherMayBeThere) {
    EXPECT_EQ(checkedPassword("pa ss\n"), QByteArray("pa ss"));
    EXPECT_EQ(checkedPassword("pass\r\n"), QByteArray("pass"));
    EXPECT_EQ(checkedPassword(" pass "), QByteArray(" pass "));
    for (const QByteArray& bad : {QByteArray(), QByteArray("\n"), QByteArray("a\nb\n"),
                                  QByteArray("a\0b", 3), QByteArray(70'000, 'x')})
        EXPECT_FALSE(checkedPassword(bad)) << bad.size();
}

TEST(Rendering, AnImportTellsWhatBecameOfEachShare) {
    const QJsonObject films{{"name", "Films"}};
    const QJsonObject answer{{"added", QJsonArray{films, QJsonObject{{"name", "a\nb"}}}},
                             {"updated", QJsonArray()},
                             {"skipped", QJsonArray{films}}};
    EXPECT_EQ(importOutcome(answer, true).output,
              "Films: added\na\\nb: added\nFilms: skipped\n"
              "2 added, 0 updated, 1 skipped (nothing was done)\n");
    QJsonObject withoutPassword = answer;
    withoutPassword.insert("passwordsNotStored", QJsonArray{"Films"});
    const Outcome outcome = importOutcome(withoutPassword, false);
    EXPECT_EQ(outcome.code, Failed);
    EXPECT_TRUE(outcome.error.startsWith("Films: the password could not be stored"));
}

TEST(Rendering, AValueIsShownAsItIsTyped) {
    EXPECT_EQ(renderValue(true), "true");
    EXPECT_EQ(renderValue(qint64(5'242'880'000)), "5242880000");
    EXPECT_EQ(renderValue(90.5), "90.5");
    EXPECT_EQ(renderValue("zh-Hans"), "zh-Hans");
}

} // namespace
} // namespace harbrix
