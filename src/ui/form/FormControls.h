#pragma once

#include "config/NASConfig.h"
#include "ui/widgets/FlatStyle.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

namespace harbrix {

[[nodiscard]] inline QLineEdit* makeField(const char* objectName) {
    auto* field = new QLineEdit;
    field->setObjectName(QString::fromLatin1(objectName));
    return field;
}

[[nodiscard]] inline QCheckBox* makeSwitch(const char* objectName) {
    auto* toggle = new QCheckBox;
    toggle->setObjectName(QString::fromLatin1(objectName));
    FlatStyle::setSwitch(*toggle);
    return toggle;
}

/// A picker over all cases of the enumeration, by their display names.
template <typename Enumeration>
[[nodiscard]] QComboBox* makePicker(const char* objectName) {
    auto* picker = new QComboBox;
    picker->setObjectName(QString::fromLatin1(objectName));
    for (const auto& entry : allCases(Enumeration{}))
        picker->addItem(QString::fromUtf8(entry.displayName), int(entry.value));
    return picker;
}

template <typename Enumeration>
[[nodiscard]] Enumeration pickedIn(const QComboBox& picker) {
    return static_cast<Enumeration>(picker.currentData().toInt());
}

template <typename Enumeration>
void pick(QComboBox& picker, Enumeration value) {
    picker.setCurrentIndex(picker.findData(int(value)));
}

} // namespace harbrix
