#pragma once

#include "config/NASConfig.h"
#include "ui/widgets/GroupedForm.h"

class QComboBox;
class QLineEdit;
class QPushButton;

namespace harbrix {

class NetworkMonitor;

/// On which networks a share belongs: an address range with presets, a list of Wi-Fi names, or
/// both.
class NetworkBindingSection : public FormSection {
    Q_OBJECT

public:
    explicit NetworkBindingSection(const NetworkMonitor& network, QWidget* parent = nullptr);

    void load(const NASConfigDraft& draft);
    void store(NASConfigDraft& draft) const;
    void retranslate();

private:
    [[nodiscard]] QWidget* buildRange();
    [[nodiscard]] QWidget* buildNetworkNames();
    [[nodiscard]] NetworkBindingStrategy strategy() const;
    void showRowsInUse();
    void showCurrentNetwork();
    void fillEmptyRange();
    void addNetworkName();
    void showNetworkNames();
    void addNetworkNameRow(int index);

    const NetworkMonitor& m_network;
    QStringList m_networkSSIDList;

    QComboBox* m_strategy;
    QLineEdit* m_networkIPRange;
    QLineEdit* m_newSSID;
    FormRow* m_strategyRow;
    FormRow* m_rangeRow;
    QWidget* m_range = nullptr;
    TextLabel* m_currentNetwork = nullptr;
    QPushButton* m_presetCurrentNetwork = nullptr;
    QPushButton* m_presetAllNetworks = nullptr;
    QPushButton* m_presetCurrentIP = nullptr;
    QWidget* m_names = nullptr;
    QVBoxLayout* m_nameRows = nullptr;
    QPushButton* m_addName = nullptr;
    TextLabel* m_hint = nullptr;
};

} // namespace harbrix
