#pragma once

#include "ui/widgets/GroupedForm.h"

namespace harbrix {

/// One page of the settings window. Its controls are named by the keys of the settings that they
/// are for.
class SettingsTab : public GroupedForm {
    Q_OBJECT

public:
    using GroupedForm::GroupedForm;

    /// Puts all texts, in the language in force.
    virtual void retranslate() = 0;
    /// The page comes into view.
    virtual void appear() {}

protected:
    [[nodiscard]] FormSection* makeSection() {
        auto* section = new FormSection;
        addSection(section);
        return section;
    }
};

} // namespace harbrix
