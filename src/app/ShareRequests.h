#pragma once

#include "config/NASConfig.h"

#include <QJsonObject>

#include <expected>

namespace harbrix {

/// Why a request from outside is turned down: a name of ctl/RemoteInterface.h and a clear text.
struct Refusal {
    QString errorName;
    QString text;

    bool operator==(const Refusal&) const = default;
};

/// The record of that id, in either case of letters, or else the only one of exactly that name.
[[nodiscard]] std::expected<NASConfig, Refusal> findShare(const std::vector<NASConfig>& configs,
                                                          const QString& nameOrId);

/// The settings of a JSON text: an object, all of whose members applySettings() knows.
[[nodiscard]] std::expected<QJsonObject, Refusal> parseSettings(const QString& json);

/// The draft with the given settings in place of its own, and with the password unless that is
/// empty; what is not named stays. The members are
/// name, address, share, user, customMountPoint, ipRange (text), protocol, auth, smbVersion,
/// bindingStrategy (text, a raw value of the record), readOnly, enabled (Boolean) and ssids (list
/// of text, trimmed, each name once). Refuses an unknown member, a wrong type, an unknown value and
/// a password that is not UTF-8.
[[nodiscard]] std::expected<NASConfigDraft, Refusal>
applySettings(NASConfigDraft draft, const QJsonObject& settings, const QByteArray& password);

} // namespace harbrix
