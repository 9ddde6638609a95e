#include "app/ShareDescription.h"

#include "base/Json.h"

#include <QJsonArray>

#include <cmath>

namespace harbrix {
namespace {

using Kind = MountState::Kind;

QJsonObject describeBinding(const ShareFacts& facts) {
    const auto& binding = facts.config.networkBinding;
    return {{"strategy", rawValue(binding.strategy)},
            {"ipRange", binding.ipRange},
            {"ssids", QJsonArray::fromStringList(binding.ssidList)},
            {"matched", facts.match.matched},
            {"ipMatched", facts.match.ipMatched},
            {"ssidMatched", facts.match.ssidMatched}};
}

QJsonObject describeError(const HarbrixError& error) {
    return {{"case", error.caseName()}, {"text", error.errorDescription()}};
}

QString inSeconds(Seconds span) {
    return QStringLiteral("in %1 s").arg(int(std::ceil(span.count())));
}

QString reasonWhileOffline(const ShareFacts& facts) {
    if (!facts.isOnline)
        return QStringLiteral("this machine has no network");
    if (!facts.match.matched)
        return QStringLiteral("the share does not belong on this network");
    return QStringLiteral("its volume was gone at the last look");
}

QString reasonWhileIdle(const ShareFacts& facts) {
    if (!facts.config.isEnabled)
        return QStringLiteral("disabled: mounted only when asked for");
    if (facts.isOnline && !facts.match.matched)
        return QStringLiteral("the share does not belong on this network");
    return {};
}

QString reasonForState(const ShareFacts& facts) {
    switch (facts.status.mountState.kind()) {
    case Kind::idle:
        return reasonWhileIdle(facts);
    case Kind::offline:
        return reasonWhileOffline(facts);
    case Kind::failed:
        return QStringLiteral("%1 attempts in a row failed").arg(facts.failures);
    case Kind::mounting:
    case Kind::mounted:
    case Kind::unmounting:
        return {};
    }
    Q_UNREACHABLE();
}

} // namespace

QString reasonFor(const ShareFacts& facts) {
    QString reason = reasonForState(facts);
    if (facts.status.mountState.kind() == Kind::failed && facts.failures < 2)
        reason.clear(); // the error says it
    QStringList parts;
    if (!reason.isEmpty())
        parts << reason;
    if (facts.untilDelayedMount)
        parts << QStringLiteral("to be mounted ") + inSeconds(*facts.untilDelayedMount);
    else if (facts.untilRetry)
        parts << QStringLiteral("next attempt ") + inSeconds(*facts.untilRetry);
    return parts.join(QStringLiteral("; "));
}

QJsonObject describe(const ShareFacts& facts) {
    const NASConfig& config = facts.config;
    const NASStatus& status = facts.status;
    QJsonObject share{{"id", uuidText(config.id)},
                      {"name", config.name},
                      {"enabled", config.isEnabled},
                      {"protocol", rawValue(config.protocol)},
                      {"address", config.address},
                      {"share", config.sharePath},
                      {"auth", rawValue(config.authMethod)},
                      {"smbVersion", rawValue(config.mountOptions.smbVersion)},
                      {"readOnly", config.mountOptions.readOnly},
                      {"mountPoint", facts.mountPoint},
                      {"binding", describeBinding(facts)},
                      {"state", status.mountState.name()}};
    if (config.username)
        share.insert("user", *config.username);
    if (config.mountOptions.customMountPoint)
        share.insert("customMountPoint", *config.mountOptions.customMountPoint);
    if (const auto& error = status.mountState.error())
        share.insert("error", describeError(*error));
    if (status.mountState.kind() == Kind::mounted && status.lastMountedAt)
        share.insert("mountedAt", iso8601Text(*status.lastMountedAt));
    if (facts.untilRetry)
        share.insert("retry", QJsonObject{{"seconds", facts.untilRetry->count()},
                                          {"failures", facts.failures}});
    if (const QString reason = reasonFor(facts); !reason.isEmpty())
        share.insert("reason", reason);
    return share;
}

QString nameOf(AppState::Kind kind) {
    switch (kind) {
    case AppState::Kind::unconfigured:
        return QStringLiteral("unconfigured");
    case AppState::Kind::idle:
        return QStringLiteral("idle");
    case AppState::Kind::operating:
        return QStringLiteral("operating");
    case AppState::Kind::active:
        return QStringLiteral("active");
    case AppState::Kind::error:
        return QStringLiteral("error");
    }
    Q_UNREACHABLE();
}

} // namespace harbrix
