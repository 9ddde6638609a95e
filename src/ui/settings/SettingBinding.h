#pragma once

#include <QString>

#include <functional>

class QCheckBox;
class QComboBox;

namespace harbrix {

class Stepper;
class UserDefaults;

// Each keeps a control and a stored setting the same: the control shows what is stored, also when
// somebody else changes it, and stores what the user chooses. Nothing stored, or a value of another
// type, shows as the setting's default. The defaults outlive the control.

/// A Boolean.
void bindSetting(QCheckBox& toggle, UserDefaults& defaults, const QString& key);
/// A number, stored as a double.
void bindSetting(Stepper& stepper, UserDefaults& defaults, const QString& key);
/// One of the texts, or the integers, that are the data of the picker's items.
void bindSetting(QComboBox& picker, UserDefaults& defaults, const QString& key);

/// A stepper over the range of the setting.
[[nodiscard]] Stepper* makeStepper(UserDefaults& defaults, const QString& key,
                                   std::function<QString(int)> textOf);
/// A switch for the setting.
[[nodiscard]] QCheckBox* makeSettingSwitch(UserDefaults& defaults, const QString& key);

} // namespace harbrix
