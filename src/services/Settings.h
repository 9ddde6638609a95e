#pragma once

#include "platform/UserDefaults.h"

#include <expected>
#include <limits>
#include <vector>

namespace harbrix {

/// One of the user's settings as it is stored: its key, its type, what counts where nothing (or a
/// value of another type) is stored, and what a user may choose.
struct Setting {
    enum class Type { Boolean, Integer, Number, Text };
    /// What may be chosen for a number: from, to, and the steps between, counted from the lower
    /// end. A step of 0 is any number.
    struct Range {
        double minimum = std::numeric_limits<double>::lowest();
        double maximum = std::numeric_limits<double>::max();
        double step = 0;
    };

    QString key;
    UserDefaults::Value defaultValue; ///< its alternative is the setting's type
    Range range = {};                 ///< of an integer or a number
    QString unit = {};                ///< of an integer or a number, empty without one
    QStringList choices = {};         ///< of a text: all there are
    QString meaning;                  ///< half a sentence, in English, for tools

    [[nodiscard]] Type type() const;
};

/// Everything that a user sets, in the order of the settings window. What the program keeps for
/// itself among the defaults (the records of the shares, the recent files, dates) is not here.
///
/// "cache.maxSize" is in bytes, as it is stored; the settings window shows and chooses MiB.
[[nodiscard]] const std::vector<Setting>& allSettings();
/// Nothing for an unknown key.
[[nodiscard]] const Setting* findSetting(const QString& key);
/// Known keys that an unknown one was probably meant for, the best first; at most three.
[[nodiscard]] QStringList similarSettingKeys(const QString& unknownKey);

/// What is stored, or the default where nothing, another type or a text that is no choice is.
[[nodiscard]] UserDefaults::Value settingValue(const Setting& setting,
                                               const UserDefaults& defaults);
/// The value that a text stands for: "true" or "false", a number, one of the choices. The error
/// tells what is taken instead.
[[nodiscard]] std::expected<UserDefaults::Value, QString> parseSetting(const Setting& setting,
                                                                       const QString& text);
/// What parseSetting() takes, in words: "a number from 60 to 600 in steps of 60 (seconds)".
[[nodiscard]] QString acceptedValues(const Setting& setting);

} // namespace harbrix
