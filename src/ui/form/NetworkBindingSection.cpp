#include "ui/form/NetworkBindingSection.h"

#include "automation/NetworkMonitor.h"
#include "automation/ShareOverview.h"
#include "services/Text.h"
#include "ui/form/FormControls.h"
#include "ui/widgets/FlowLayout.h"
#include "ui/widgets/SymbolIcon.h"

#include <QPushButton>
#include <QToolButton>

namespace harbrix {
namespace {

QPushButton* makePreset(const char* objectName) {
    auto* button = new QPushButton;
    button->setObjectName(QString::fromLatin1(objectName));
    return button;
}

} // namespace

NetworkBindingSection::NetworkBindingSection(const NetworkMonitor& network, QWidget* parent)
    : FormSection(parent), m_network(network),
      m_strategy(makePicker<NetworkBindingStrategy>("bindingStrategy")),
      m_networkIPRange(makeField("networkIPRange")), m_newSSID(makeField("newSSID")),
      m_strategyRow(addRow(m_strategy)), m_rangeRow(addRow(m_networkIPRange)) {
    m_range = buildRange();
    addContent(m_range);
    m_names = buildNetworkNames();
    addContent(m_names);
    m_hint = addHint();
    connect(m_strategy, &QComboBox::currentIndexChanged, this,
            &NetworkBindingSection::showRowsInUse);
    connect(&network, &NetworkMonitor::currentIPAddressAssigned, this,
            &NetworkBindingSection::showCurrentNetwork);
}

QWidget* NetworkBindingSection::buildRange() {
    auto* range = new QWidget;
    auto* column = new QVBoxLayout(range);
    column->setContentsMargins(QMargins());
    column->setSpacing(spacing::small);
    m_currentNetwork = new TextLabel(TextRole::caption, Tint::secondary);
    m_currentNetwork->setObjectName(QStringLiteral("currentNetwork"));
    column->addWidget(m_currentNetwork);

    auto* presets = new FlowLayout(spacing::small);
    m_presetCurrentNetwork = makePreset("presetCurrentNetwork");
    connect(m_presetCurrentNetwork, &QPushButton::clicked, this, [this] {
        m_networkIPRange->setText(m_network.currentNetworkAddresses().network.value_or(QString()));
    });
    m_presetAllNetworks = makePreset("presetAllNetworks");
    connect(m_presetAllNetworks, &QPushButton::clicked, this,
            [this] { m_networkIPRange->setText(QStringLiteral("0.0.0.0/0")); });
    m_presetCurrentIP = makePreset("presetCurrentIP");
    connect(m_presetCurrentIP, &QPushButton::clicked, this, [this] {
        m_networkIPRange->setText(m_network.currentIPAddress().value_or(QString()));
    });
    for (QPushButton* preset : {m_presetCurrentNetwork, m_presetAllNetworks, m_presetCurrentIP})
        presets->addWidget(preset);
    column->addLayout(presets);
    return range;
}

QWidget* NetworkBindingSection::buildNetworkNames() {
    auto* names = new QWidget;
    auto* column = new QVBoxLayout(names);
    column->setContentsMargins(QMargins());
    column->setSpacing(spacing::small);
    m_nameRows = new QVBoxLayout;
    m_nameRows->setSpacing(spacing::tight);
    column->addLayout(m_nameRows);

    auto* entry = new QHBoxLayout;
    entry->setSpacing(spacing::small);
    m_addName = new QPushButton;
    m_addName->setObjectName(QStringLiteral("addSSID"));
    entry->addWidget(m_newSSID, 1);
    entry->addWidget(m_addName);
    column->addLayout(entry);
    connect(m_addName, &QPushButton::clicked, this, &NetworkBindingSection::addNetworkName);
    connect(m_newSSID, &QLineEdit::returnPressed, this, &NetworkBindingSection::addNetworkName);
    return names;
}

void NetworkBindingSection::load(const NASConfigDraft& draft) {
    m_networkIPRange->setText(draft.networkBinding.ipRange);
    m_networkSSIDList = draft.networkBinding.ssidList;
    pick(*m_strategy, draft.networkBinding.strategy);
    showNetworkNames();
    showRowsInUse();
}

void NetworkBindingSection::store(NASConfigDraft& draft) const {
    draft.networkBinding = {strategy(), m_networkIPRange->text(), m_networkSSIDList};
}

NetworkBindingStrategy NetworkBindingSection::strategy() const {
    return pickedIn<NetworkBindingStrategy>(*m_strategy);
}

void NetworkBindingSection::retranslate() {
    setTitle(text("nas.networkBinding"));
    m_strategyRow->setText(text("nas.networkBinding.strategy"));
    m_rangeRow->setText(text("nas.networkBinding.ipRange"));
    m_networkIPRange->setPlaceholderText(text("nas.networkBinding.ipRange.placeholder"));
    m_presetCurrentNetwork->setText(text("nas.networkBinding.preset.currentNetwork"));
    m_presetAllNetworks->setText(text("nas.networkBinding.preset.allNetworks"));
    m_presetCurrentIP->setText(text("nas.networkBinding.preset.currentIP"));
    m_newSSID->setPlaceholderText(text("nas.networkBinding.ssid.add"));
    m_newSSID->setAccessibleName(text("nas.networkBinding.ssid.add"));
    m_addName->setText(text("common.add"));
    m_hint->setText(text("nas.networkBinding.hint"));
    showCurrentNetwork();
    showNetworkNames();
    emit rowsChanged();
}

void NetworkBindingSection::showRowsInUse() {
    const bool range = usesAddressRange(strategy());
    m_rangeRow->setVisible(range);
    m_range->setVisible(range);
    m_names->setVisible(usesNetworkNames(strategy()));
    if (range)
        fillEmptyRange();
    emit rowsChanged();
}

void NetworkBindingSection::showCurrentNetwork() {
    const auto network = m_network.currentNetworkAddresses().network;
    m_currentNetwork->setVisible(network.has_value());
    m_currentNetwork->setText(network ? formatted("nas.networkBinding.currentIP", {*network})
                                      : QString());
}

void NetworkBindingSection::fillEmptyRange() {
    if (m_networkIPRange->text().isEmpty())
        m_networkIPRange->setText(m_network.currentNetworkAddresses().network.value_or(QString()));
}

void NetworkBindingSection::addNetworkName() {
    if (m_newSSID->text().trimmed().isEmpty())
        return;
    m_networkSSIDList = withNetworkName(m_networkSSIDList, m_newSSID->text());
    m_newSSID->clear();
    showNetworkNames();
}

void NetworkBindingSection::showNetworkNames() {
    while (QLayoutItem* item = m_nameRows->takeAt(0)) {
        // The button of the row may be the one that was just clicked.
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    for (int index = 0; index < m_networkSSIDList.size(); ++index)
        addNetworkNameRow(index);
}

void NetworkBindingSection::addNetworkNameRow(int index) {
    const QString& name = m_networkSSIDList.at(index);
    auto* row = new QWidget;
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(QMargins());
    line->setSpacing(spacing::small);
    line->addWidget(new SymbolView(QStringLiteral("wifi"), 16, Tint::secondary));
    auto* label = new TextLabel(TextRole::body, Tint::primary, TextLabel::Lines::One);
    label->setObjectName(QStringLiteral("ssid"));
    label->setText(name);
    line->addWidget(label, 1);
    auto* remove = new QToolButton;
    remove->setObjectName(QStringLiteral("removeSSID"));
    remove->setIcon(symbolIcon(QStringLiteral("minus.circle.fill"), Tint::red));
    remove->setAutoRaise(true);
    remove->setToolTip(text("common.delete"));
    remove->setAccessibleName(text("common.delete") + QLatin1Char(' ') + name);
    connect(remove, &QToolButton::clicked, this, [this, index] {
        m_networkSSIDList.removeAt(index);
        showNetworkNames();
    });
    line->addWidget(remove);
    m_nameRows->addWidget(row);
}

} // namespace harbrix
