#include "core/HarbrixError.h"

#include <array>

namespace harbrix {
namespace {

struct CaseText {
    const char* name;
    const char* before;
    const char* after;
};

// In the order of HarbrixError::Case.
constexpr std::array<CaseText, 10> caseTexts{{
    {"authenticationFailed", "Authentication failed: ", ""},
    {"networkTimeout", "Network connection timed out: ", ""},
    {"mountPointOccupied", "Mount point '", "' is already occupied by another volume."},
    {"keychainWriteFailed", "Failed to save credentials to Keychain (OSStatus: ", ")."},
    {"keychainError", "Keychain error: ", ""},
    {"mountFailed", "Mount operation failed: ", ""},
    {"unmountFailed", "Unmount operation failed: ", ""},
    {"connectionFailed", "Connection failed: ", ""},
    {"timeout", "Operation timed out: ", ""},
    {"unknown", "An unexpected error occurred: ", ""},
}};

const CaseText& textsOf(HarbrixError::Case kind) {
    return caseTexts.at(static_cast<std::size_t>(kind));
}

} // namespace

HarbrixError HarbrixError::authenticationFailed(QString text) {
    return {Case::authenticationFailed, std::move(text)};
}

HarbrixError HarbrixError::networkTimeout(QString text) {
    return {Case::networkTimeout, std::move(text)};
}

HarbrixError HarbrixError::mountPointOccupied(QString path) {
    return {Case::mountPointOccupied, std::move(path)};
}

HarbrixError HarbrixError::keychainWriteFailed(qint32 status) {
    return {Case::keychainWriteFailed, status};
}

HarbrixError HarbrixError::keychainError(QString text) {
    return {Case::keychainError, std::move(text)};
}

HarbrixError HarbrixError::mountFailed(QString text) {
    return {Case::mountFailed, std::move(text)};
}

HarbrixError HarbrixError::unmountFailed(QString text) {
    return {Case::unmountFailed, std::move(text)};
}

HarbrixError HarbrixError::connectionFailed(QString text) {
    return {Case::connectionFailed, std::move(text)};
}

HarbrixError HarbrixError::timeout(QString text) {
    return {Case::timeout, std::move(text)};
}

HarbrixError HarbrixError::unknown(QString text) {
    return {Case::unknown, std::move(text)};
}

QString HarbrixError::caseName() const {
    return QString::fromUtf8(textsOf(m_case).name);
}

QString HarbrixError::payload() const {
    if (const auto* status = std::get_if<qint32>(&m_payload))
        return QString::number(*status);
    return std::get<QString>(m_payload);
}

QString HarbrixError::errorDescription() const {
    const CaseText& texts = textsOf(m_case);
    return QString::fromUtf8(texts.before) + payload() + QString::fromUtf8(texts.after);
}

QString errorDescription(GlobalError error) {
    switch (error) {
    case GlobalError::networkUnavailable:
        return QStringLiteral(
            "No network connection available. Please check your network settings.");
    case GlobalError::allMountsFailed:
        return QStringLiteral(
            "All NAS mount operations have failed. Check individual configurations for details.");
    }
    Q_UNREACHABLE();
}

} // namespace harbrix
