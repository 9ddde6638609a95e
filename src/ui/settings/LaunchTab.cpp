#include "ui/settings/LaunchTab.h"

#include "services/Text.h"
#include "ui/settings/SettingBinding.h"
#include "ui/widgets/Stepper.h"
#include "ui/widgets/SymbolIcon.h"

#include <QCheckBox>

namespace harbrix {
namespace {

constexpr int lineSymbolSize = 14;

struct StabilityLine {
    const char* symbol;
    TextKey text;
};

constexpr StabilityLine stabilityLines[] = {
    {"wifi.circle", "settings.launch.stability.network"},
    {"arrow.clockwise.circle", "settings.launch.stability.retry"},
    {"bed.double.circle", "settings.launch.stability.wake"},
    {"network", "settings.launch.stability.binding"},
};

QString minutesText(int seconds) {
    return fillPlaceholders(QStringLiteral("%lld min"), {QString::number(seconds / 60)});
}

} // namespace

LaunchTab::LaunchTab(UserDefaults& defaults, const LoginItem& loginItem, QWidget* parent)
    : SettingsTab(parent), m_launchAtLogin(loginItem),
      m_atLogin(makeSettingSwitch(defaults, QStringLiteral("launchAtLogin"))),
      m_autoMount(makeSettingSwitch(defaults, QStringLiteral("autoMountOnLaunch"))),
      m_keepAlive(makeSettingSwitch(defaults, QStringLiteral("keepAliveEnabled"))),
      m_interval(makeStepper(defaults, QStringLiteral("keepAliveInterval"), minutesText)),
      m_behavior(makeSection()), m_atLoginRow(m_behavior->addRow(m_atLogin)),
      m_atLoginHint(m_behavior->addNote()), m_mounting(makeSection()),
      m_autoMountRow(m_mounting->addRow(m_autoMount)), m_autoMountHint(m_mounting->addNote()),
      m_keeping(makeSection()), m_keepAliveRow(m_keeping->addRow(m_keepAlive)),
      m_intervalRow(m_keeping->addRow(m_interval)), m_keepAliveHint(m_keeping->addNote()) {
    m_mounting->addContent(buildStabilityBox());
    connect(m_atLogin, &QCheckBox::clicked, this,
            [this](bool isOn) { m_launchAtLogin.setEnabled(isOn); });
    const auto showInterval = [this](bool isKept) {
        m_intervalRow->setVisible(isKept);
        emit m_keeping->rowsChanged();
    };
    connect(m_keepAlive, &QCheckBox::toggled, this, showInterval);
    showInterval(m_keepAlive->isChecked());
}

QWidget* LaunchTab::buildStabilityBox() {
    auto* box = new QWidget;
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(QMargins());
    column->setSpacing(spacing::small);
    m_stabilityTitle = new TextLabel(TextRole::callout, Tint::primary);
    column->addWidget(m_stabilityTitle);
    for (std::size_t line = 0; line < m_stability.size(); ++line) {
        m_stability[line] = new TextLabel(TextRole::caption, Tint::secondary);
        auto* row = new QHBoxLayout;
        row->setSpacing(spacing::small);
        row->addWidget(new SymbolView(QString::fromLatin1(stabilityLines[line].symbol),
                                      lineSymbolSize, Tint::blue),
                       0, Qt::AlignTop);
        row->addWidget(m_stability[line], 1);
        column->addLayout(row);
    }
    return box;
}

void LaunchTab::retranslate() {
    m_behavior->setTitle(text("settings.launch.behavior"));
    m_atLoginRow->setText(text("settings.launch.atLogin"));
    m_atLoginHint->setText(text("settings.launch.atLogin.hint"));
    m_mounting->setTitle(text("settings.launch.autoMount"));
    m_autoMountRow->setText(text("settings.launch.autoMount.toggle"));
    m_autoMountHint->setText(text("settings.launch.autoMount.hint"));
    m_stabilityTitle->setText(text("settings.launch.stability.title"));
    for (std::size_t line = 0; line < m_stability.size(); ++line)
        m_stability[line]->setText(text(stabilityLines[line].text));
    m_keeping->setTitle(text("settings.keepAlive.title"));
    m_keepAliveRow->setText(text("settings.keepAlive.enabled"));
    m_intervalRow->setText(text("settings.keepAlive.interval"));
    m_keepAliveHint->setText(text("settings.keepAlive.hint"));
}

} // namespace harbrix
