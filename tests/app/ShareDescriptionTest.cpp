#include "app/ShareDescription.h"

#include <QJsonDocument>
#include <gtest/gtest.h>

namespace harbrix {
namespace {

using Kind = MountState::Kind;

ShareFacts factsOf(const MountState& state) {
    ShareFacts facts;
    facts.config = NASConfig::blank();
    facts.status.mountState = state;
    facts.isOnline = true;
    facts.match.matched = true;
    return facts;
}

TEST(ShareDescription, HoldsNoSecret) {
    ShareFacts facts = factsOf(Kind::idle);
    facts.config.password = "geheim";
    facts.config.keychainIdentifier = "hidden-account";
    const QByteArray text = QJsonDocument(describe(facts)).toJson();
    EXPECT_FALSE(text.contains("geheim"));
    EXPECT_FALSE(text.contains("hidden-account"));
}

TEST(ShareDescription, AnOldErrorIsNotTheErrorOfAMountedShare) {
    ShareFacts facts = factsOf(Kind::mounted);
    facts.status.lastError = HarbrixError::timeout("before");
    EXPECT_FALSE(describe(facts).contains("error"));
    facts.status.mountState = MountState::failed(HarbrixError::timeout("now"));
    const QJsonObject error = describe(facts).value("error").toObject();
    EXPECT_EQ(error.value("case"), "timeout");
    EXPECT_EQ(error.value("text"), "Operation timed out: now");
}

TEST(ShareDescription, ReasonsTellStateAndWhatComesNext) {
    const MountState failed = MountState::failed(HarbrixError::timeout("x"));
    using Change = void (*)(ShareFacts&);
    const std::vector<std::tuple<MountState, Change, const char*>> table{
        {Kind::idle, [](ShareFacts&) {}, ""},
        {Kind::idle, [](ShareFacts& f) { f.config.isEnabled = false; },
         "disabled: mounted only when asked for"},
        {Kind::idle, [](ShareFacts& f) { f.match.matched = false; },
         "the share does not belong on this network"},
        {Kind::mounted, [](ShareFacts& f) { f.match.matched = false; }, ""},
        {Kind::offline, [](ShareFacts& f) { f.isOnline = false; }, "this machine has no network"},
        {Kind::offline, [](ShareFacts& f) { f.untilDelayedMount = Seconds(4.2); },
         "its volume was gone at the last look; to be mounted in 5 s"},
        {failed,
         [](ShareFacts& f) {
             f.failures = 1;
             f.untilRetry = Seconds(10);
         },
         "next attempt in 10 s"},
        {failed,
         [](ShareFacts& f) {
             f.failures = 3;
             f.untilRetry = Seconds(60);
         },
         "3 attempts in a row failed; next attempt in 60 s"},
    };
    for (const auto& [state, change, reason] : table) {
        ShareFacts facts = factsOf(state);
        change(facts);
        EXPECT_EQ(reasonFor(facts), reason);
    }
}

} // namespace
} // namespace harbrix
