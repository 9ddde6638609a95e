#include "services/LogLine.h"

#include "base/Task.h"
#include "base/TaskScope.h"

#include <gtest/gtest.h>

namespace harbrix {
namespace {

TEST(LogLine, CutsTheTextOfAFunctionToItsSignature) {
    const struct {
        const char* pretty;
        const char* signature;
    } rows[] = {
        {"int main()", "main()"},
        {"harbrix::M::M()", "M()"},
        {"harbrix::M::~M()", "~M()"},
        {"std::optional<QUrl> harbrix::LogManager::exportLogsToFile()", "exportLogsToFile()"},
        {"harbrix::Result<void, harbrix::SystemError> harbrix::f(const harbrix::NASConfig&)",
         "f(NASConfig)"},
        {"static std::optional<std::vector<int> > harbrix::M::f(const "
         "std::optional<std::__cxx11::basic_string<char> >&, std::function<void(bool, int)>, "
         "const char*)",
         "f(optional<string>, function<void(bool, int)>, char*)"},
        {"long unsigned int harbrix::M::n(long long unsigned int, void (*)(int), harbrix::M&&) "
         "const",
         "n(long long unsigned int, void (*)(int), M)"},
        {"void harbrix::{anonymous}::anon(harbrix::Outer::Inner*)", "anon(Inner*)"},
        {"void harbrix::M::t(A) const [with A = std::__cxx11::basic_string<char>]", "t(A)"},
        {"void harbrix::M::operator()(int)", "operator()(int)"},
        {"bool harbrix::M::operator==(int) const", "operator==(int)"},
        {"harbrix::M::operator bool() const", "operator bool()"},
        {"harbrix::M::f(const QString&)::<lambda(int)>", "f(QString)"},
        {"harbrix::M::f()::<lambda()>::<lambda(QString)>", "f()"},
        {"void harbrix::M::flow(harbrix::M::flow(QString, int)::_ZN7harbrix1M4flowE.Frame*)",
         "flow(QString, int)"},
        {"void harbrix::{anonymous}::flow(flow(std::optional<int>)::_ZN7harbrix4flowE.Frame*)",
         "flow(optional<int>)"},
        {"", ""},
        {"(", "()"},
        {"f(int", "f(int)"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(functionSignature(QString::fromUtf8(row.pretty)).toStdString(), row.signature)
            << row.pretty;
}

Task<void> tellWhere(std::optional<QUrl>, std::source_location* where) {
    *where = std::source_location::current();
    co_return;
}

TEST(LogLine, KnowsTheCompilersFormOfACoroutine) {
    std::source_location where;
    TaskScope scope;
    scope.launch(tellWhere({}, &where));
    EXPECT_EQ(functionSignature(QString::fromUtf8(where.function_name())).toStdString(),
              "tellWhere(optional<QUrl>, source_location*)");
}

TEST(LogLine, JoinsItsPartsWithoutPadding) {
    const QDateTime time(QDate(2026, 3, 1), QTime(14, 5, 9, 417));
    const auto where = std::source_location::current();
    const struct {
        LogLevel level;
        const char* label;
    } rows[] = {{LogLevel::debug, "DEBUG"},
                {LogLevel::info, "INFO"},
                {LogLevel::warning, "WARN"},
                {LogLevel::error, "ERROR"},
                {LogLevel::critical, "CRIT"}};
    for (const auto& row : rows)
        EXPECT_EQ(formatLogLine(time, row.level, LogManager::categoryName(LogCategory::mount),
                                where, QStringLiteral("two\nlines - of it"))
                      .toStdString(),
                  std::string("[2026-03-01 14:05:09.417] [") + row.label +
                      "] [Mount] LogLineTest.cpp:" + std::to_string(where.line()) +
                      " TestBody() - two\nlines - of it");
}

} // namespace
} // namespace harbrix
