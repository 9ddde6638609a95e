#pragma once

#include "ctl/ExitCode.h"

#include <QDBusConnection>
#include <QString>
#include <QVariantList>

#include <chrono>
#include <expected>
#include <optional>

namespace harbrix {

/// The running Harbrix, as reached over the session bus.
class RunningProgram {
public:
    struct Failure {
        ExitCode code = Failed;
        QString text;
    };

    /// A mount is bounded by its own time limits; this bounds a program that does not run on.
    static constexpr std::chrono::minutes longestFlow{10};
    static constexpr std::chrono::seconds longestAnswer{20};

    RunningProgram();

    [[nodiscard]] const QDBusConnection& connection() const { return m_bus; }
    /// Why a call would not reach the program, if that is known before it is made.
    [[nodiscard]] std::optional<Failure> unreachable() const;

    /// Calls a method that answers with one text, or with nothing. Blocks until the answer, the
    /// time limit or the end of the program.
    [[nodiscard]] std::expected<QString, Failure>
    call(const char* method, const QVariantList& arguments = {},
         std::chrono::milliseconds limit = longestAnswer) const;
    /// Once the program is gone: says so and ends the event loop with the code for it. Until the
    /// owner goes.
    void exitWhenGone(QObject* owner) const;

private:
    QDBusConnection m_bus;
};

} // namespace harbrix
