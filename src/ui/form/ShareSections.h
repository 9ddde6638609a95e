#pragma once

#include "config/NASConfig.h"
#include "ui/widgets/GroupedForm.h"

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace harbrix {

// The sections of the form of a share. Each fills its controls from a draft, writes them back into
// one, and sets its texts anew when the language changes.

/// What went wrong with the latest mount.
class MountErrorSection : public FormSection {
    Q_OBJECT

public:
    explicit MountErrorSection(QWidget* parent = nullptr);

    /// Hidden without a text.
    void setError(const QString& text);
    void retranslate();

private:
    TextLabel* m_text;
};

class BasicInfoSection : public FormSection {
    Q_OBJECT

public:
    explicit BasicInfoSection(QWidget* parent = nullptr);

    void load(const NASConfigDraft& draft);
    void store(NASConfigDraft& draft) const;
    void retranslate();
    void focusFirstField();
    [[nodiscard]] NASProtocol protocol() const;
    [[nodiscard]] bool hasAddress() const;

signals:
    void protocolChanged();
    void addressChanged();

private:
    QLineEdit* m_name;
    QComboBox* m_protocol;
    QLineEdit* m_address;
    QLineEdit* m_sharePath;
    FormRow* m_nameRow;
    FormRow* m_protocolRow;
    FormRow* m_addressRow;
    FormRow* m_sharePathRow;
    TextLabel* m_versionNote;
};

class AuthSection : public FormSection {
    Q_OBJECT

public:
    explicit AuthSection(QWidget* parent = nullptr);

    void load(const NASConfigDraft& draft);
    void store(NASConfigDraft& draft) const;
    void retranslate();
    void setProtocol(NASProtocol protocol);

private:
    void showRowsInUse();

    NASProtocol m_shownProtocol = NASProtocol::smb;
    QComboBox* m_authMethod;
    QLineEdit* m_username;
    QLineEdit* m_password;
    FormRow* m_authMethodRow;
    FormRow* m_usernameRow;
    FormRow* m_passwordRow;
    TextLabel* m_note;
};

class MountOptionsSection : public FormSection {
    Q_OBJECT

public:
    explicit MountOptionsSection(QWidget* parent = nullptr);

    void load(const NASConfigDraft& draft);
    void store(NASConfigDraft& draft) const;
    void retranslate();
    void setProtocol(NASProtocol protocol);

private:
    QComboBox* m_smbVersion;
    QCheckBox* m_readOnly;
    QCheckBox* m_isEnabled;
    QLineEdit* m_customMountPoint;
    FormRow* m_smbVersionRow;
    QWidget* m_nfsOptions;
    TextLabel* m_nfsOptionsTitle;
    TextLabel* m_nfsOptionsDetail;
    FormRow* m_readOnlyRow;
    FormRow* m_isEnabledRow;
    FormRow* m_customMountPointRow;
    TextLabel* m_help;
};

} // namespace harbrix
