#include "ui/form/NASDetailView.h"

#include "automation/AutoMountStrategy.h"
#include "automation/NetworkMonitor.h"
#include "automation/ShareSaver.h"
#include "core/AppStateManager.h"
#include "mount/MountOperations.h"
#include "services/LanguageManager.h"
#include "services/Text.h"
#include "ui/form/ActionBar.h"
#include "ui/form/FormDrafts.h"
#include "ui/form/NetworkBindingSection.h"
#include "ui/form/ShareSections.h"
#include "ui/widgets/SymbolIcon.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace harbrix {
namespace {

/// What a form starts with; without a record the range is filled in from the present network.
NASConfigDraft initialDraft(const std::optional<NASConfig>& existing) {
    if (existing)
        return draftOf(*existing);
    NASConfigDraft draft;
    draft.networkBinding.ipRange.clear();
    return draft;
}

} // namespace

NASDetailView::NASDetailView(const Environment& environment,
                             std::optional<NASConfig> existingConfig, CloseHandler onClose,
                             QWidget* parent)
    : QWidget(parent), m_environment(environment), m_existingConfig(std::move(existingConfig)),
      m_onClose(std::move(onClose)), m_error(new MountErrorSection),
      m_basicInfo(new BasicInfoSection), m_auth(new AuthSection),
      m_options(new MountOptionsSection), m_binding(new NetworkBindingSection(environment.network)),
      m_actions(new ActionBar) {
    setObjectName(QStringLiteral("shareForm"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(QMargins());
    column->setSpacing(0);
    column->addWidget(buildForm(), 1);
    column->addWidget(m_actions);
    buildActions();

    load(initialDraft(m_existingConfig));
    m_saved = currentDraft();
    if (const auto draft =
            m_existingConfig ? m_environment.drafts.draft(m_existingConfig->id) : std::nullopt)
        load(*draft);
    connectState();
    retranslate();
    showProtocol();
    connectEdits();
}

void NASDetailView::load(const NASConfigDraft& draft) {
    m_basicInfo->load(draft);
    m_auth->load(draft);
    m_options->load(draft);
    m_binding->load(draft);
}

void NASDetailView::discardChanges() {
    if (!m_existingConfig)
        return;
    load(m_saved);
    showProtocol();
    keepDraft();
}

QWidget* NASDetailView::buildForm() {
    auto* form = new GroupedForm;
    for (FormSection* section :
         std::initializer_list<FormSection*>{m_error, m_basicInfo, m_auth, m_options, m_binding})
        form->addSection(section);
    return makeFormArea(form);
}

void NASDetailView::buildActions() {
    connect(m_actions, &ActionBar::testRequested, this, &NASDetailView::testConnection);
    connect(m_actions, &ActionBar::openRequested, this, &NASDetailView::openMountPoint);
    connect(m_actions, &ActionBar::unmountRequested, this, &NASDetailView::unmount);
    connect(m_actions, &ActionBar::mountRequested, this, &NASDetailView::mount);
    connect(m_actions, &ActionBar::saveRequested, this, &NASDetailView::save);
    connect(m_actions, &ActionBar::closeRequested, this, [this] {
        if (m_onClose)
            m_onClose();
    });
}

void NASDetailView::connectState() {
    connect(m_basicInfo, &BasicInfoSection::protocolChanged, this, &NASDetailView::showProtocol);
    connect(m_basicInfo, &BasicInfoSection::addressChanged, this,
            [this] { m_actions->setResultVisible(m_basicInfo->hasAddress()); });
    m_actions->setResultVisible(m_basicInfo->hasAddress());
    connect(&m_environment.appState, &AppStateManager::changed, this, &NASDetailView::showStatus);
    connect(&m_environment.languageManager, &LanguageManager::localeChanged, this,
            &NASDetailView::retranslate);
}

void NASDetailView::focusFirstField() {
    m_basicInfo->focusFirstField();
}

void NASDetailView::retranslate() {
    m_error->retranslate();
    m_basicInfo->retranslate();
    m_auth->retranslate();
    m_options->retranslate();
    m_binding->retranslate();
    m_actions->retranslate();
    showStatus();
}

void NASDetailView::showProtocol() {
    m_auth->setProtocol(m_basicInfo->protocol());
    m_options->setProtocol(m_basicInfo->protocol());
}

void NASDetailView::showStatus() {
    if (!m_existingConfig) {
        m_actions->setMountControl(std::nullopt);
        return;
    }
    const auto status = m_environment.appState.status(m_existingConfig->id);
    const auto error = currentError(status);
    m_error->setError(error ? error->errorDescription() : QString());
    m_actions->setMountControl(mountControl(status));
}

void NASDetailView::connectEdits() {
    for (const FormSection* section :
         std::initializer_list<FormSection*>{m_basicInfo, m_auth, m_options, m_binding}) {
        connect(section, &FormSection::edited, this, &NASDetailView::keepDraft);
        connect(section, &FormSection::rowsChanged, this, &NASDetailView::keepDraft);
    }
}

void NASDetailView::keepDraft() {
    if (!m_existingConfig)
        return;
    const NASConfigDraft draft = currentDraft();
    if (draft == m_saved)
        m_environment.drafts.drop(m_existingConfig->id);
    else
        m_environment.drafts.keep(m_existingConfig->id, draft);
}

NASConfigDraft NASDetailView::currentDraft() const {
    NASConfigDraft draft;
    m_basicInfo->store(draft);
    m_auth->store(draft);
    m_options->store(draft);
    m_binding->store(draft);
    return draft;
}

NASConfig NASDetailView::buildConfig() const {
    return harbrix::buildConfig(currentDraft(), m_existingConfig);
}

void NASDetailView::save() {
    m_saved = currentDraft();
    keepDraft();
    m_environment.saver.save(buildConfig(), m_existingConfig ? ShareSaver::Target::ExistingRecord
                                                             : ShareSaver::Target::NewRecord);
}

void NASDetailView::testConnection() {
    m_actions->setTestResult(TestConnectionResult{TestConnectionResult::Testing{}});
    m_flows.launch(runTest(buildConfig()));
}

Task<void> NASDetailView::runTest(NASConfig config) {
    auto ping = m_environment.engine.ping(std::move(config));
    const auto latency = co_await ping;
    if (latency)
        m_actions->setTestResult(TestConnectionResult{TestConnectionResult::Success{*latency}});
    else
        m_actions->setTestResult(TestConnectionResult{
            TestConnectionResult::Failure{latency.error().errorDescription()}});
}

void NASDetailView::mount() {
    if (!m_existingConfig)
        return;
    if (m_environment.network.matchesBinding(*m_existingConfig)) {
        m_environment.strategy.launch(m_environment.strategy.mount(m_existingConfig->id));
        return;
    }
    m_pendingNetworkMismatchConfig = m_existingConfig;
    showNetworkMismatchAlert();
}

void NASDetailView::unmount() {
    if (m_existingConfig)
        m_environment.strategy.launch(m_environment.strategy.unmount(m_existingConfig->id));
}

void NASDetailView::openMountPoint() {
    const auto status =
        m_existingConfig ? m_environment.appState.status(m_existingConfig->id) : std::nullopt;
    if (status && status->mountPoint)
        m_environment.openUrl(*status->mountPoint);
}

void NASDetailView::showNetworkMismatchAlert() {
    auto* alert = new QMessageBox(this);
    alert->setObjectName(QStringLiteral("networkMismatchAlert"));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowTitle(text("nas.networkMismatch.title"));
    alert->setIconPixmap(symbolPixmap(QStringLiteral("exclamationmark.triangle.fill"), 40,
                                      color(Tint::orange, palette()), devicePixelRatioF()));
    alert->setText(text("nas.networkMismatch.title"));
    if (auto* title = alert->findChild<QLabel*>(QStringLiteral("qt_msgbox_label")))
        title->setFont(fontFor(TextRole::headline));
    alert->setInformativeText(text("nas.networkMismatch.message"));
    QPushButton* cancel = alert->addButton(text("common.cancel"), QMessageBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cancelMount"));
    QPushButton* confirm =
        alert->addButton(text("nas.networkMismatch.confirm"), QMessageBox::AcceptRole);
    confirm->setObjectName(QStringLiteral("confirmMount"));
    alert->setDefaultButton(cancel);
    alert->setEscapeButton(cancel);
    connect(alert, &QMessageBox::finished, this, [this, alert, confirm] {
        const auto pending = std::exchange(m_pendingNetworkMismatchConfig, std::nullopt);
        if (pending && alert->clickedButton() == confirm)
            m_environment.strategy.launch(m_environment.strategy.mount(pending->id));
    });
    alert->open();
}

} // namespace harbrix
