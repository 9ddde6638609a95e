#pragma once

namespace harbrix::remote {

// The names under which the running program is reached on the session bus, for both sides.

inline constexpr auto service = "com.harbrix.app";
inline constexpr auto path = "/com/harbrix/RemoteControl";
inline constexpr auto interface = "com.harbrix.RemoteControl1";

// The errors that a call can end with, beside those of the bus itself.

inline constexpr auto noSuchShareError = "com.harbrix.Error.NoSuchShare";
inline constexpr auto ambiguousNameError = "com.harbrix.Error.AmbiguousName";
inline constexpr auto invalidSettingError = "com.harbrix.Error.InvalidSetting";
/// A setting of the program that does not exist, and a value that one does not take.
inline constexpr auto unknownKeyError = "com.harbrix.Error.UnknownKey";
inline constexpr auto invalidValueError = "com.harbrix.Error.InvalidValue";
/// What was to be imported is no list of records.
inline constexpr auto invalidRecordsError = "com.harbrix.Error.InvalidRecords";
/// The change was made, but the settings file could not be written.
inline constexpr auto notSavedError = "com.harbrix.Error.NotSaved";

} // namespace harbrix::remote
