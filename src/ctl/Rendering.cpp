#include "ctl/Rendering.h"

#include "ctl/Table.h"

namespace harbrix {
namespace {

QString field(const QJsonObject& object, const char* key) {
    return visible(object.value(QLatin1String(key)).toString());
}

QString errorText(const QJsonObject& share) {
    return field(share.value("error").toObject(), "text");
}

bool hasVolume(const QJsonObject& share) {
    return share.value("volume").toString() == "present";
}

/// What is to be said beside the state: the error, else where the share is mounted.
QString detailOf(const QJsonObject& share) {
    const QString state = share.value("state").toString();
    const QString reason = field(share, "reason");
    if (state == "failed")
        return errorText(share) +
               (reason.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(reason));
    if (state == "mounted" && !hasVolume(share))
        return QStringLiteral("no volume at ") + field(share, "mountPoint");
    if (state == "mounted")
        return field(share, "mountPoint");
    return reason;
}

QString secondsText(const QJsonValue& seconds) {
    return QStringLiteral("%1 s").arg(qRound(seconds.toDouble()));
}

QString shareLine(const QJsonObject& share, const QString& what) {
    return QStringLiteral("%1: %2\n").arg(field(share, "name"), what);
}

Outcome failure(const QJsonObject& share, const QString& text) {
    return {Failed, {}, shareLine(share, text)};
}

Outcome collect(const QJsonArray& shares, Outcome (*outcomeOf)(const QJsonObject&)) {
    Outcome total;
    for (const QJsonValue& value : shares) {
        const Outcome one = outcomeOf(value.toObject());
        total.output += one.output;
        total.error += one.error;
        if (total.code == Succeeded)
            total.code = one.code;
    }
    return total;
}

QJsonArray enabledOnly(const QJsonArray& shares) {
    QJsonArray enabled;
    for (const QJsonValue& share : shares)
        if (share.toObject().value("enabled").toBool())
            enabled.append(share);
    return enabled;
}

Outcome outcomeAmongAll(const QJsonObject& share) {
    const QString state = share.value("state").toString();
    if (state == "mounted" || state == "failed")
        return mountOutcome(share);
    return {Succeeded, shareLine(share, QStringLiteral("left alone (%1)").arg(state)), {}};
}

QString networkLine(const QJsonObject& network) {
    if (network.isEmpty())
        return {};
    if (!network.value("connected").toBool())
        return QStringLiteral("Network: none\n\n");
    const QString address = field(network, "ipAddress");
    QString line = QStringLiteral("Network: ") +
                   (address.isEmpty() ? QStringLiteral("no IPv4 address") : address);
    if (network.contains("ssid"))
        line += QStringLiteral(", Wi-Fi ") + field(network, "ssid");
    return line + QStringLiteral("\n\n");
}

} // namespace

QString renderList(const QJsonArray& shares) {
    if (shares.isEmpty())
        return QStringLiteral("No shares; add one with harbrixctl add.\n");
    std::vector<QStringList> rows{{"NAME", "PROTOCOL", "ADDRESS", "SHARE", "ENABLED", "ID"}};
    for (const QJsonValue& value : shares) {
        const QJsonObject share = value.toObject();
        rows.push_back({field(share, "name"), field(share, "protocol"), field(share, "address"),
                        field(share, "share"), share.value("enabled").toBool() ? "yes" : "no",
                        field(share, "id")});
    }
    return alignedTable(rows);
}

QString renderStatus(const QJsonObject& status) {
    const QJsonArray shares = status.value("shares").toArray();
    const QString network = networkLine(status.value("network").toObject());
    if (shares.isEmpty())
        return network + renderList(shares);
    std::vector<QStringList> rows{{"NAME", "STATE", "VOLUME", "DETAIL"}};
    for (const QJsonValue& value : shares) {
        const QJsonObject share = value.toObject();
        rows.push_back(
            {field(share, "name"), field(share, "state"), field(share, "volume"), detailOf(share)});
    }
    return network + alignedTable(rows);
}

QString renderShare(const QJsonObject& share) {
    const QJsonObject binding = share.value("binding").toObject();
    const QJsonObject retry = share.value("retry").toObject();
    QStringList ssids;
    for (const QJsonValue& ssid : binding.value("ssids").toArray())
        ssids << visible(ssid.toString());
    const auto yesNo = [&share](const char* key) {
        return share.value(QLatin1String(key)).toBool() ? QStringLiteral("yes")
                                                        : QStringLiteral("no");
    };
    std::vector<QStringList> rows{
        {"Name", field(share, "name")},
        {"Id", field(share, "id")},
        {"State", field(share, "state")},
        {"Reason", field(share, "reason")},
        {"Error", errorText(share)},
        {"Volume", field(share, "volume")},
        {"Mount point", field(share, "mountPoint")},
        {"Mounted since", field(share, "mountedAt")},
        {"Next attempt in", retry.contains("seconds") ? secondsText(retry.value("seconds")) : ""},
        {"Protocol", field(share, "protocol")},
        {"Address", field(share, "address")},
        {"Share", field(share, "share")},
        {"Authentication", field(share, "auth")},
        {"User", field(share, "user")},
        {"SMB version", field(share, "smbVersion")},
        {"Read only", yesNo("readOnly")},
        {"Enabled", yesNo("enabled")},
        {"Binding", field(binding, "strategy")},
        {"IP range", field(binding, "ipRange")},
        {"Wi-Fi names", ssids.join(", ")},
    };
    if (binding.contains("matched"))
        rows.push_back({"Belongs here", binding.value("matched").toBool() ? "yes" : "no"});
    std::erase_if(rows, [](const QStringList& row) { return row.last().isEmpty(); });
    return alignedTable(rows);
}

QString renderChange(const QString& timeOfDay, const QJsonObject& share) {
    QString line =
        QStringLiteral("%1  %2  %3").arg(timeOfDay, field(share, "name"), field(share, "state"));
    if (share.value("state").toString() == "failed")
        line += QStringLiteral("  ") + errorText(share);
    return line + QLatin1Char('\n');
}

Outcome mountOutcome(const QJsonObject& share) {
    const QString state = share.value("state").toString();
    const QString mountPoint = field(share, "mountPoint");
    if (state == "failed")
        return failure(share, errorText(share));
    if (state != "mounted")
        return failure(share, QStringLiteral("not mounted, now %1").arg(visible(state)));
    if (!hasVolume(share))
        return failure(share, QStringLiteral("no volume at %1 although the mount tool was content; "
                                             "check the user name, the password and that the "
                                             "server has this share")
                                  .arg(mountPoint));
    return {Succeeded, shareLine(share, QStringLiteral("mounted at ") + mountPoint), {}};
}

Outcome unmountOutcome(const QJsonObject& share) {
    if (share.value("state").toString() == "failed")
        return failure(share, errorText(share));
    if (hasVolume(share))
        return failure(
            share, QStringLiteral("Harbrix does not hold the volume that is still at %1; mount the "
                                  "share first, or run: diskutil unmount PATH")
                       .arg(field(share, "mountPoint")));
    return {Succeeded, shareLine(share, QStringLiteral("unmounted")), {}};
}

Outcome mountAllOutcome(const QJsonArray& shares) {
    return collect(enabledOnly(shares), outcomeAmongAll);
}

Outcome unmountAllOutcome(const QJsonArray& shares) {
    return collect(enabledOnly(shares), unmountOutcome);
}

Outcome importOutcome(const QJsonObject& import, bool isTrial) {
    Outcome outcome;
    QStringList counts;
    for (const char* what : {"added", "updated", "skipped"}) {
        const QJsonArray shares = import.value(QLatin1String(what)).toArray();
        for (const QJsonValue& share : shares)
            outcome.output += shareLine(share.toObject(), QLatin1String(what));
        counts << QStringLiteral("%1 %2").arg(shares.size()).arg(QLatin1String(what));
    }
    outcome.output +=
        counts.join(QStringLiteral(", ")) + QLatin1String(isTrial ? " (nothing was done)\n" : "\n");
    for (const QJsonValue& name : import.value("passwordsNotStored").toArray()) {
        outcome.code = Failed;
        outcome.error += QStringLiteral("%1: the password could not be stored; see the log of "
                                        "Harbrix for the reason\n")
                             .arg(visible(name.toString()));
    }
    return outcome;
}

QString renderSettings(const QJsonArray& settings) {
    std::vector<QStringList> rows{{"KEY", "VALUE", "DEFAULT", "TAKES"}};
    for (const QJsonValue& each : settings) {
        const QJsonObject setting = each.toObject();
        rows.push_back({field(setting, "key"), renderValue(setting.value("value")),
                        renderValue(setting.value("default")), field(setting, "accepts")});
    }
    return alignedTable(rows);
}

QString renderValue(const QJsonValue& value) {
    if (value.isBool())
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    // Without an exponent, whatever the size: bytes are to be read.
    if (value.isDouble())
        return QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest);
    return visible(value.toString());
}

} // namespace harbrix
