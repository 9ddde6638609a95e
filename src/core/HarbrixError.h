#pragma once

#include "base/Result.h"

#include <QString>

#include <variant>

namespace harbrix {

/// The one error that crosses rooms: a case and its payload. The texts are fixed and never
/// localized.
class HarbrixError {
public:
    enum class Case {
        authenticationFailed,
        networkTimeout,
        mountPointOccupied,
        keychainWriteFailed,
        keychainError,
        mountFailed,
        unmountFailed,
        connectionFailed,
        timeout,
        unknown
    };

    [[nodiscard]] static HarbrixError authenticationFailed(QString text);
    [[nodiscard]] static HarbrixError networkTimeout(QString text);
    [[nodiscard]] static HarbrixError mountPointOccupied(QString path);
    [[nodiscard]] static HarbrixError keychainWriteFailed(qint32 status);
    [[nodiscard]] static HarbrixError keychainError(QString text);
    [[nodiscard]] static HarbrixError mountFailed(QString text);
    [[nodiscard]] static HarbrixError unmountFailed(QString text);
    [[nodiscard]] static HarbrixError connectionFailed(QString text);
    [[nodiscard]] static HarbrixError timeout(QString text);
    [[nodiscard]] static HarbrixError unknown(QString text);

    [[nodiscard]] Case kind() const { return m_case; }
    /// The case as it is named, for tools that read it: "mountFailed".
    [[nodiscard]] QString caseName() const;
    /// The payload as text; a status code in decimal.
    [[nodiscard]] QString payload() const;
    [[nodiscard]] QString errorDescription() const;

    bool operator==(const HarbrixError&) const = default;

private:
    HarbrixError(Case kind, std::variant<QString, qint32> payload)
        : m_case(kind), m_payload(std::move(payload)) {}

    Case m_case;
    std::variant<QString, qint32> m_payload;
};

/// An error of the application as a whole.
enum class GlobalError { networkUnavailable, allMountsFailed };
[[nodiscard]] QString errorDescription(GlobalError error);

} // namespace harbrix
