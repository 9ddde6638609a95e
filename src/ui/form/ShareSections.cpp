#include "ui/form/ShareSections.h"

#include "services/Text.h"
#include "ui/form/FormControls.h"
#include "ui/widgets/SymbolIcon.h"

#include <QHBoxLayout>

namespace harbrix {

MountErrorSection::MountErrorSection(QWidget* parent)
    : FormSection(parent), m_text(new TextLabel(TextRole::body, Tint::orange)) {
    m_text->setObjectName(QStringLiteral("mountError"));
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* content = new QWidget;
    auto* row = new QHBoxLayout(content);
    row->setContentsMargins(QMargins());
    row->setSpacing(spacing::small);
    row->addWidget(
        new SymbolView(QStringLiteral("exclamationmark.triangle.fill"), 18, Tint::orange), 0,
        Qt::AlignTop);
    row->addWidget(m_text, 1);
    addContent(content);
    hide();
}

void MountErrorSection::setError(const QString& text) {
    m_text->setText(text);
    setVisible(!text.isEmpty());
}

void MountErrorSection::retranslate() {
    setTitle(text("nas.mountError"));
}

BasicInfoSection::BasicInfoSection(QWidget* parent)
    : FormSection(parent), m_name(makeField("name")),
      m_protocol(makePicker<NASProtocol>("protocol")), m_address(makeField("address")),
      m_sharePath(makeField("sharePath")), m_nameRow(addRow(m_name)),
      m_protocolRow(addRow(m_protocol)), m_addressRow(addRow(m_address)),
      m_sharePathRow(addRow(m_sharePath)), m_versionNote(addHint()) {
    m_versionNote->setObjectName(QStringLiteral("nfsVersionNote"));
    connect(m_address, &QLineEdit::textChanged, this, &BasicInfoSection::addressChanged);
    connect(m_protocol, &QComboBox::currentIndexChanged, this, [this] {
        retranslate();
        emit protocolChanged();
    });
}

void BasicInfoSection::load(const NASConfigDraft& draft) {
    m_name->setText(draft.name);
    pick(*m_protocol, draft.protocol);
    m_address->setText(draft.address);
    m_sharePath->setText(draft.sharePath);
}

void BasicInfoSection::store(NASConfigDraft& draft) const {
    draft.name = m_name->text();
    draft.protocol = protocol();
    draft.address = m_address->text();
    draft.sharePath = m_sharePath->text();
}

void BasicInfoSection::retranslate() {
    const bool nfs = protocol() == NASProtocol::nfs;
    setTitle(text("nas.basicInfo"));
    m_nameRow->setText(text("nas.name"));
    m_name->setPlaceholderText(text("nas.namePlaceholder"));
    m_protocolRow->setText(text("nas.protocol"));
    m_addressRow->setText(text("nas.address"));
    m_address->setPlaceholderText(text("nas.addressPlaceholder"));
    m_sharePathRow->setText(nfs ? text("nfs.sharePath") : text("nas.sharePath"));
    m_sharePath->setPlaceholderText(nfs ? text("nfs.sharePathPlaceholder")
                                        : text("nas.sharePathPlaceholder"));
    m_versionNote->setText(text("nfs.versionNote"));
    m_versionNote->setVisible(nfs);
    emit rowsChanged();
}

void BasicInfoSection::focusFirstField() {
    m_name->setFocus(Qt::OtherFocusReason);
}

NASProtocol BasicInfoSection::protocol() const {
    return pickedIn<NASProtocol>(*m_protocol);
}

bool BasicInfoSection::hasAddress() const {
    return !m_address->text().isEmpty();
}

AuthSection::AuthSection(QWidget* parent)
    : FormSection(parent), m_authMethod(makePicker<AuthMethod>("authMethod")),
      m_username(makeField("username")), m_password(makeField("password")),
      m_authMethodRow(addRow(m_authMethod)), m_usernameRow(addRow(m_username)),
      m_passwordRow(addRow(m_password)), m_note(addNote()) {
    m_note->setObjectName(QStringLiteral("nfsNoAuthNote"));
    m_password->setEchoMode(QLineEdit::Password);
    m_password->setInputMethodHints(Qt::ImhSensitiveData | Qt::ImhNoPredictiveText |
                                    Qt::ImhNoAutoUppercase);
    connect(m_authMethod, &QComboBox::currentIndexChanged, this, &AuthSection::showRowsInUse);
}

void AuthSection::load(const NASConfigDraft& draft) {
    pick(*m_authMethod, draft.authMethod);
    m_username->setText(draft.username);
    m_password->setText(draft.password);
}

void AuthSection::store(NASConfigDraft& draft) const {
    draft.authMethod = pickedIn<AuthMethod>(*m_authMethod);
    draft.username = m_username->text();
    draft.password = m_password->text();
}

void AuthSection::retranslate() {
    setTitle(m_shownProtocol == NASProtocol::nfs ? text("nfs.auth") : text("nas.auth"));
    m_authMethodRow->setText(text("nas.authMethod"));
    m_usernameRow->setText(text("nas.username"));
    m_username->setPlaceholderText(text("nas.usernamePlaceholder"));
    m_passwordRow->setText(text("nas.password"));
    m_password->setPlaceholderText(text("nas.passwordPlaceholder"));
    m_note->setText(text("nfs.noAuthNote"));
    showRowsInUse();
}

void AuthSection::setProtocol(NASProtocol protocol) {
    m_shownProtocol = protocol;
    retranslate();
}

void AuthSection::showRowsInUse() {
    const bool smb = m_shownProtocol == NASProtocol::smb;
    const bool asksPassword = smb && pickedIn<AuthMethod>(*m_authMethod) == AuthMethod::password;
    m_authMethodRow->setVisible(smb);
    m_usernameRow->setVisible(asksPassword);
    m_passwordRow->setVisible(asksPassword);
    m_note->setVisible(!smb);
    emit rowsChanged();
}

MountOptionsSection::MountOptionsSection(QWidget* parent)
    : FormSection(parent), m_smbVersion(makePicker<SMBVersion>("smbVersion")),
      m_readOnly(makeSwitch("readOnly")), m_isEnabled(makeSwitch("isEnabled")),
      m_customMountPoint(makeField("customMountPoint")), m_smbVersionRow(addRow(m_smbVersion)),
      m_nfsOptions(new QWidget), m_nfsOptionsTitle(new TextLabel(TextRole::body, Tint::primary)),
      m_nfsOptionsDetail(new TextLabel(TextRole::caption, Tint::secondary)) {
    m_nfsOptions->setObjectName(QStringLiteral("nfsMountOptions"));
    auto* block = new QVBoxLayout(m_nfsOptions);
    block->setContentsMargins(QMargins());
    block->setSpacing(spacing::tight);
    block->addWidget(m_nfsOptionsTitle);
    block->addWidget(m_nfsOptionsDetail);
    addContent(m_nfsOptions);
    m_readOnlyRow = addRow(m_readOnly);
    m_isEnabledRow = addRow(m_isEnabled);
    m_customMountPointRow = addRow(m_customMountPoint);
    m_help = addHint();
}

void MountOptionsSection::load(const NASConfigDraft& draft) {
    pick(*m_smbVersion, draft.smbVersion);
    m_readOnly->setChecked(draft.readOnly);
    m_isEnabled->setChecked(draft.isEnabled);
    m_customMountPoint->setText(draft.customMountPoint);
}

void MountOptionsSection::store(NASConfigDraft& draft) const {
    draft.smbVersion = pickedIn<SMBVersion>(*m_smbVersion);
    draft.readOnly = m_readOnly->isChecked();
    draft.isEnabled = m_isEnabled->isChecked();
    draft.customMountPoint = m_customMountPoint->text();
}

void MountOptionsSection::retranslate() {
    setTitle(text("nas.mountOptions"));
    m_smbVersionRow->setText(text("nas.smbVersion"));
    m_nfsOptionsTitle->setText(text("nfs.mountOptions.title"));
    m_nfsOptionsDetail->setText(text("nfs.mountOptions.detail"));
    m_readOnlyRow->setText(text("nas.readOnly"));
    m_isEnabledRow->setText(text("nas.autoMount"));
    m_customMountPointRow->setText(text("nas.customMountPoint"));
    m_customMountPoint->setPlaceholderText(text("nas.mountPointPlaceholder"));
    m_help->setText(QStringList{text("nas.mountPointHelp"), text("nas.mountPointExample1"),
                                text("nas.mountPointExample2")}
                        .join(QLatin1Char('\n')));
    emit rowsChanged();
}

void MountOptionsSection::setProtocol(NASProtocol protocol) {
    m_smbVersionRow->setVisible(protocol == NASProtocol::smb);
    m_nfsOptions->setVisible(protocol == NASProtocol::nfs);
    emit rowsChanged();
}

} // namespace harbrix
