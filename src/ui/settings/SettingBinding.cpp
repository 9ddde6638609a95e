#include "ui/settings/SettingBinding.h"

#include "services/Settings.h"
#include "ui/widgets/FlatStyle.h"
#include "ui/widgets/Stepper.h"

#include <QCheckBox>
#include <QComboBox>

namespace harbrix {
namespace {

const Setting& settingOf(const QString& key) {
    const Setting* setting = findSetting(key);
    Q_ASSERT(setting);
    return *setting;
}

/// Shows the value now and whenever it changes.
template <typename Show>
void follow(QWidget& control, UserDefaults& defaults, const QString& key, Show show) {
    const auto showStored = [&defaults, key, show] {
        show(settingValue(settingOf(key), defaults));
    };
    QObject::connect(&defaults, &UserDefaults::changed, &control,
                     [key, showStored](const QString& changed) {
                         if (changed == key)
                             showStored();
                     });
    showStored();
}

} // namespace

void bindSetting(QCheckBox& toggle, UserDefaults& defaults, const QString& key) {
    follow(toggle, defaults, key, [&toggle](const UserDefaults::Value& value) {
        toggle.setChecked(std::get<bool>(value));
    });
    QObject::connect(&toggle, &QCheckBox::clicked, &toggle,
                     [&defaults, key](bool isOn) { defaults.set(key, isOn); });
}

void bindSetting(Stepper& stepper, UserDefaults& defaults, const QString& key) {
    follow(stepper, defaults, key, [&stepper](const UserDefaults::Value& value) {
        // Out of range it shows the nearer end; far out it would not even be an int.
        const auto within =
            std::clamp<double>(std::get<double>(value), stepper.minimum(), stepper.maximum());
        stepper.setValue(static_cast<int>(within));
    });
    QObject::connect(&stepper, &Stepper::stepped, &stepper,
                     [&defaults, key](int value) { defaults.set(key, double(value)); });
}

void bindSetting(QComboBox& picker, UserDefaults& defaults, const QString& key) {
    follow(picker, defaults, key, [&picker](const UserDefaults::Value& value) {
        const auto* text = std::get_if<QString>(&value);
        picker.setCurrentIndex(
            picker.findData(text ? QVariant(*text) : QVariant(std::get<qint64>(value))));
    });
    QObject::connect(&picker, &QComboBox::activated, &picker, [&picker, &defaults, key] {
        const QVariant chosen = picker.currentData();
        if (chosen.typeId() == QMetaType::QString)
            defaults.set(key, chosen.toString());
        else
            defaults.set(key, chosen.toLongLong());
    });
}

Stepper* makeStepper(UserDefaults& defaults, const QString& key,
                     std::function<QString(int)> textOf) {
    const Setting::Range& range = settingOf(key).range;
    auto* stepper =
        new Stepper({int(range.minimum), int(range.maximum), int(range.step)}, std::move(textOf));
    stepper->setObjectName(key);
    bindSetting(*stepper, defaults, key);
    return stepper;
}

QCheckBox* makeSettingSwitch(UserDefaults& defaults, const QString& key) {
    auto* toggle = new QCheckBox;
    toggle->setObjectName(key);
    FlatStyle::setSwitch(*toggle);
    bindSetting(*toggle, defaults, key);
    return toggle;
}

} // namespace harbrix
