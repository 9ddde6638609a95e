#pragma once

#include "base/TaskScope.h"
#include "config/NASConfig.h"
#include "ui/Environment.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace harbrix {

class ActionBar;
class AuthSection;
class BasicInfoSection;
class MountErrorSection;
class MountOptionsSection;
class NetworkBindingSection;

/// The form of one share: described, tested, mounted and unmounted here. Nothing is validated: what
/// is missing is what the mount reports.
class NASDetailView : public QWidget {
    Q_OBJECT

public:
    using CloseHandler = std::function<void()>;

    /// Without an existing record the form makes a new one when it is saved.
    NASDetailView(const Environment& environment, std::optional<NASConfig> existingConfig,
                  CloseHandler onClose, QWidget* parent = nullptr);

    void focusFirstField();
    /// Shows what is saved; what was typed is lost.
    void discardChanges();

private:
    [[nodiscard]] QWidget* buildForm();
    void buildActions();
    void load(const NASConfigDraft& draft);
    void connectState();
    void connectEdits();
    void retranslate();
    void showProtocol();
    void showStatus();
    [[nodiscard]] NASConfigDraft currentDraft() const;
    [[nodiscard]] NASConfig buildConfig() const;
    /// Notes what is typed, so that it is there again when the form is.
    void keepDraft();
    void save();
    void testConnection();
    Task<void> runTest(NASConfig config);
    void mount();
    void unmount();
    void openMountPoint();
    void showNetworkMismatchAlert();

    Environment m_environment;
    const std::optional<NASConfig> m_existingConfig;
    NASConfigDraft m_saved; ///< what the form shows of the record as it is stored
    CloseHandler m_onClose;
    std::optional<NASConfig> m_pendingNetworkMismatchConfig;

    MountErrorSection* m_error;
    BasicInfoSection* m_basicInfo;
    AuthSection* m_auth;
    MountOptionsSection* m_options;
    NetworkBindingSection* m_binding;
    ActionBar* m_actions;

    TaskScope m_flows; ///< ends with the form, and a test that is under way with it
};

} // namespace harbrix
