#include "services/Settings.h"

#include "services/AnalyticsService.h"
#include "services/LanguageManager.h"
#include "services/LogManager.h"
#include "services/NotificationPreferences.h"

#include <algorithm>
#include <cmath>

namespace harbrix {
namespace {

using Range = Setting::Range;
using Value = UserDefaults::Value;

constexpr double mebibyte = 1'048'576;
constexpr double minute = 60;
constexpr double year = 31'536'000;

const QString& seconds() {
    static const QString unit = QStringLiteral("seconds");
    return unit;
}

Setting toggle(const QString& key, bool isOn, const QString& meaning) {
    return {.key = key, .defaultValue = isOn, .meaning = meaning};
}

Setting number(const QString& key, double value, Range range, const QString& unit,
               const QString& meaning) {
    return {.key = key, .defaultValue = value, .range = range, .unit = unit, .meaning = meaning};
}

Setting integer(const QString& key, qint64 value, Range range, const QString& unit,
                const QString& meaning) {
    return {.key = key, .defaultValue = value, .range = range, .unit = unit, .meaning = meaning};
}

Setting choice(const QString& key, const QString& value, const QStringList& choices,
               const QString& meaning) {
    return {.key = key, .defaultValue = value, .choices = choices, .meaning = meaning};
}

QStringList languageCodes() {
    QStringList codes;
    for (const AppLanguage language : allLanguages())
        codes << rawValue(language);
    return codes;
}

std::vector<Setting> notificationSettings() {
    std::vector<Setting> settings{
        toggle(NotificationPreferences::globalKey, true, "notifications of any kind")};
    const auto add = [&settings](NotificationEvent event, bool isOn, const QString& meaning) {
        settings.push_back(
            toggle(NotificationPreferences::eventPrefix + rawValue(event), isOn, meaning));
    };
    add(NotificationEvent::mountSuccess, true, "tell of a mount");
    add(NotificationEvent::mountFailure, true, "tell of a mount that failed");
    add(NotificationEvent::unmount, false, "tell of an unmount");
    add(NotificationEvent::networkChange, true, "tell of another network");
    add(NotificationEvent::transferComplete, true, "tell of a finished transfer");
    add(NotificationEvent::transferFailed, true, "tell of a transfer that failed");
    add(NotificationEvent::cacheCleanup, false, "tell of a clean-up of the cache");
    return settings;
}

std::vector<Setting> makeSettings() {
    std::vector<Setting> settings{
        choice(LanguageManager::appLanguageKey, "system", languageCodes(), "language of the texts"),
        toggle("launchAtLogin", false, "start with the desktop session"),
        toggle("autoMountOnLaunch", true, "mount the shares that belong here at the start"),
        toggle("keepAliveEnabled", true,
               "check that volumes are there; read at the start and after a sleep"),
        number("keepAliveInterval", 180, {60, 600, 60}, seconds(),
               "time between two checks; read with keepAliveEnabled"),
    };
    std::ranges::move(notificationSettings(), std::back_inserter(settings));
    const std::vector<Setting> others{
        integer("cache.maxSize", 524'288'000, {100 * mebibyte, 5000 * mebibyte, 100 * mebibyte},
                "bytes", "room for copies of files"),
        toggle("cache.autoCleanup", true, "clean the cache up from time to time"),
        number("cache.cleanupInterval", 21'600, {minute, year, 0}, seconds(),
               "time between two clean-ups; read when they are switched on"),
        number("cache.maxEntryAge", 2'592'000, {minute, year, 0}, seconds(),
               "age at which a copy is removed"),
        choice("mount.defaultSMBVersion", "auto", {"auto", "2", "3"}, "kept, and read by nothing"),
        number("mount.defaultTimeout", 30, {5, 120, 5}, seconds(), "kept, and read by nothing"),
        number("mount.defaultRetryCount", 3, {0, 10, 1}, {}, "kept, and read by nothing"),
        number("mount.defaultRetryInterval", 10, {5, 60, 5}, seconds(),
               "kept, and read by nothing"),
        toggle(LogManager::debugModeKey, false, "switching it on sets log.minimumLevel to 0, too"),
        integer(LogManager::logLevelKey, 0, {0, 4, 0}, {},
                "0 debug, 1 information, 2 warnings, 3 errors, 4 critical errors alone"),
        toggle(LogManager::fileLoggingKey, false, "write the log to a file, too"),
        toggle(AnalyticsService::enabledKey, true,
               "keep a list of events, which stays on this machine"),
    };
    std::ranges::copy(others, std::back_inserter(settings));
    return settings;
}

/// How many letters have to be added, removed or replaced to come from one to the other.
qsizetype editDistance(const QString& from, const QString& to) {
    std::vector<qsizetype> row(std::size_t(to.size()) + 1);
    std::ranges::generate(row, [next = qsizetype(0)]() mutable { return next++; });
    for (qsizetype i = 0; i < from.size(); ++i) {
        qsizetype diagonal = std::exchange(row[0], i + 1);
        for (qsizetype j = 0; j < to.size(); ++j) {
            const qsizetype replaced = diagonal + (from[i].toLower() == to[j].toLower() ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

QString plainNumber(double value) {
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

bool isInRange(double value, const Range& range) {
    if (!(value >= range.minimum && value <= range.maximum))
        return false;
    return range.step == 0 || std::remainder(value - range.minimum, range.step) == 0;
}

std::optional<Value> parse(const Setting& setting, const QString& text) {
    bool isNumber = false;
    switch (setting.type()) {
    case Setting::Type::Boolean:
        if (text == "true" || text == "false")
            return text == "true";
        return std::nullopt;
    case Setting::Type::Integer: {
        const qint64 value = text.toLongLong(&isNumber);
        if (isNumber && isInRange(double(value), setting.range))
            return value;
        return std::nullopt;
    }
    case Setting::Type::Number: {
        const double value = text.toDouble(&isNumber);
        if (isNumber && isInRange(value, setting.range))
            return value;
        return std::nullopt;
    }
    case Setting::Type::Text:
        if (setting.choices.contains(text))
            return text;
        return std::nullopt;
    }
    Q_UNREACHABLE();
}

/// Each type with the alternative of UserDefaults::Value that it is stored as.
template <typename T>
bool holds(const Value& value) {
    return std::holds_alternative<T>(value);
}

} // namespace

Setting::Type Setting::type() const {
    if (holds<bool>(defaultValue))
        return Type::Boolean;
    if (holds<qint64>(defaultValue))
        return Type::Integer;
    return holds<double>(defaultValue) ? Type::Number : Type::Text;
}

const std::vector<Setting>& allSettings() {
    static const std::vector<Setting> settings = makeSettings();
    return settings;
}

const Setting* findSetting(const QString& key) {
    const auto found = std::ranges::find(allSettings(), key, &Setting::key);
    return found == allSettings().end() ? nullptr : &*found;
}

QStringList similarSettingKeys(const QString& unknownKey) {
    constexpr qsizetype mostKeys = 3;
    std::vector<std::pair<qsizetype, QString>> similar;
    for (const Setting& setting : allSettings()) {
        const qsizetype distance = editDistance(unknownKey, setting.key);
        const bool isPart =
            unknownKey.size() >= mostKeys && setting.key.contains(unknownKey, Qt::CaseInsensitive);
        if (isPart || distance <= setting.key.size() / 3)
            similar.emplace_back(isPart ? 0 : distance, setting.key);
    }
    std::ranges::sort(similar);
    QStringList keys;
    for (const auto& [distance, key] : similar)
        keys << key;
    return keys.mid(0, mostKeys);
}

UserDefaults::Value settingValue(const Setting& setting, const UserDefaults& defaults) {
    const auto orDefault = [&setting](const auto& stored) {
        return stored ? Value(*stored) : setting.defaultValue;
    };
    switch (setting.type()) {
    case Setting::Type::Boolean:
        return orDefault(defaults.boolean(setting.key));
    case Setting::Type::Integer:
        return orDefault(defaults.integer(setting.key));
    case Setting::Type::Number:
        return orDefault(defaults.number(setting.key));
    case Setting::Type::Text: {
        const auto stored = defaults.text(setting.key);
        return orDefault(stored && setting.choices.contains(*stored) ? stored : std::nullopt);
    }
    }
    Q_UNREACHABLE();
}

std::expected<UserDefaults::Value, QString> parseSetting(const Setting& setting,
                                                         const QString& text) {
    if (const auto value = parse(setting, text))
        return *value;
    return std::unexpected(
        QStringLiteral("%1 takes %2, not \"%3\"").arg(setting.key, acceptedValues(setting), text));
}

QString acceptedValues(const Setting& setting) {
    if (setting.type() == Setting::Type::Boolean)
        return QStringLiteral("true or false");
    if (setting.type() == Setting::Type::Text)
        return QStringLiteral("one of ") + setting.choices.join(QStringLiteral(", "));
    QString words =
        QLatin1String(setting.type() == Setting::Type::Integer ? "an integer" : "a number");
    words += QStringLiteral(" from %1 to %2")
                 .arg(plainNumber(setting.range.minimum), plainNumber(setting.range.maximum));
    if (setting.range.step > 0)
        words += QStringLiteral(" in steps of ") + plainNumber(setting.range.step);
    if (!setting.unit.isEmpty())
        words += QStringLiteral(" (%1)").arg(setting.unit);
    return words;
}

} // namespace harbrix
