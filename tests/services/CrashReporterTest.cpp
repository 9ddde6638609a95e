#include "services/CrashReporter.h"

#include "services/CrashHandlers.h"
#include "services/CrashReport.h"
#include "support/WaitUntil.h"

#include <QDir>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <stdexcept>

namespace harbrix {
namespace {

QList<CrashReport> reportsIn(const QString& directory) {
    QList<CrashReport> reports;
    for (const QString& name : QDir(directory).entryList(QDir::Files)) {
        QFile file(QDir(directory).filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const auto report = decodeCrashReport(file.readAll());
        EXPECT_TRUE(report && name == report->id + ".harbrix-crash");
        reports << report.value_or(CrashReport());
    }
    return reports;
}

/// Each dies in a process of its own, which runs its test from the beginning.
class CrashHandlersTest : public testing::Test {
protected:
    CrashHandlersTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    // So it must be the same there, and another one for each test.
    const QString directory =
        QDir::tempPath() + "/harbrix-crash-test-" +
        QString(testing::UnitTest::GetInstance()->current_test_info()->name()).replace(u'/', u'-');

    void SetUp() override { QDir().mkpath(directory); }
    void TearDown() override { QDir(directory).removeRecursively(); }

    void dieOf(void (*fail)()) const {
        installCrashHandlers(directory, "/home/anna");
        [fail]() noexcept { fail(); }();
    }
};

class FatalSignalTest : public CrashHandlersTest, public testing::WithParamInterface<int> {};

TEST_P(FatalSignalTest, ASignalLeavesAReportWithoutTheHomeFolder) {
    // Taken for the home folder, that of the libraries is sure to stand in some frames.
    const QString home = "/x86_64-linux-gnu/";
    EXPECT_EXIT(
        {
            installCrashHandlers(directory, home);
            std::raise(GetParam());
        },
        testing::ExitedWithCode(GetParam()), "");
    const auto reports = reportsIn(directory);
    ASSERT_EQ(reports.size(), 1);
    const CrashReport& report = reports.first();
    const QString name = "SIG" + QString(::sigabbrev_np(GetParam()));
    EXPECT_EQ(report.exceptionType, "Signal");
    EXPECT_EQ(report.exceptionName, name);
    EXPECT_EQ(report.reason, "Fatal signal " + name + " received");
    EXPECT_EQ(report.appVersion, HARBRIX_VERSION);
    EXPECT_TRUE(report.stackTrace.join(' ').contains("~libc.so.6"));
    EXPECT_FALSE(report.stackTrace.join(' ').contains(home));
}

INSTANTIATE_TEST_SUITE_P(Signals, FatalSignalTest,
                         testing::Values(SIGABRT, SIGILL, SIGSEGV, SIGBUS, SIGTRAP, SIGPIPE));

TEST_F(CrashHandlersTest, AnErrorThatNobodyCatchesTellsItsTypeAndReason) {
    EXPECT_EXIT(dieOf([] { throw std::out_of_range("no such share"); }), testing::ExitedWithCode(6),
                "");
    const auto reports = reportsIn(directory);
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports[0].exceptionType, "NSException");
    EXPECT_EQ(reports[0].exceptionName, "std::out_of_range");
    EXPECT_EQ(reports[0].reason, "no such share");
}

constexpr int lineOfDeath = __LINE__ + 3;
[[gnu::noinline]] void writeNowhere() {
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1;
}

TEST_F(CrashHandlersTest, TheNextStartAddsFunctionsAndLines) {
    const QString crashes = directory + "/Harbrix/Crashes";
    QDir().mkpath(crashes);
    EXPECT_EXIT(
        {
            installCrashHandlers(crashes, QFileInfo(directory).path());
            writeNowhere();
        },
        testing::ExitedWithCode(SIGSEGV), "");
    for (int start = 0; start < 2; ++start) { // the second finds all done
        CrashReporter next(directory, QFileInfo(directory).path());
        next.startMonitoring();
        ASSERT_TRUE(waitUntil([&] { return next.runningFlows() == 0; }));
    }
    const auto reports = reportsIn(crashes);
    ASSERT_EQ(reports.size(), 1);
    const QString trace = reports[0].stackTrace.join('\n');
    const QString expected =
        QString("writeNowhere() at CrashReporterTest.cpp:%1\n").arg(lineOfDeath);
    EXPECT_EQ(trace.count(expected), 1) << trace.toStdString();
    EXPECT_TRUE(trace.contains(" at src/services/CrashHandlers.cpp:")) << trace.toStdString();
}

TEST_F(CrashHandlersTest, AHomeFolderThatIsTheRootHidesNothing) {
    EXPECT_EXIT(
        {
            installCrashHandlers(directory, "/");
            std::raise(SIGTRAP);
        },
        testing::ExitedWithCode(SIGTRAP), "");
    const auto reports = reportsIn(directory);
    ASSERT_EQ(reports.size(), 1);
    EXPECT_TRUE(reports[0].stackTrace.join(' ').contains("/libc.so.6("));
}

TEST_F(CrashHandlersTest, WhatIsNoExceptionTellsItsType) {
    EXPECT_EXIT(dieOf([] { throw 42; }), testing::ExitedWithCode(6), "");
    const auto reports = reportsIn(directory);
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports[0].exceptionName, "int");
    EXPECT_EQ(reports[0].reason, std::nullopt);
}

/// Answers each request with the same bytes and hangs up.
class AnsweringServer : public QTcpServer {
public:
    explicit AnsweringServer(QByteArray answer) : m_answer(std::move(answer)) {
        listen(QHostAddress::LocalHost);
    }
    [[nodiscard]] QString address() const {
        return QString("http://127.0.0.1:%1/api").arg(serverPort());
    }
    QByteArrayList requests;

protected:
    void incomingConnection(qintptr descriptor) override {
        auto* socket = new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        connect(socket, &QTcpSocket::readyRead, this,
                [this, socket, request = QByteArray()]() mutable {
                    request += socket->readAll();
                    if (!request.endsWith('}'))
                        return;
                    requests << request;
                    socket->write(m_answer);
                    socket->disconnectFromHost();
                });
    }

private:
    QByteArray m_answer;
};

class CrashReporterTest : public testing::Test {
protected:
    QTemporaryDir home;
    CrashReporter reporter{home.path(), home.path()};

    QString leaveReport(const QString& reason) {
        CrashReport report = CrashReport::ofThisProgram();
        report.exceptionType = "Signal";
        report.reason = reason;
        const QString path = crashReportPath(reporter.reportDirectory(), report.id);
        leaveFile(path, encodeCrashReport(report));
        return path;
    }
    static void leaveFile(const QString& path, const QByteArray& contents) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }
    void send(const QString& backend) {
        reporter.setBackendURL(backend);
        reporter.startMonitoring();
        ASSERT_TRUE(waitUntil([this] { return reporter.runningFlows() == 0; }));
    }
};

TEST_F(CrashReporterTest, OnlyAnAnswerOf200TakesTheReport) {
    const struct {
        QByteArray answer;
        bool isTaken;
    } rows[] = {{"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n", true},
                {"HTTP/1.1 201 Created\r\nContent-Length: 0\r\n\r\n", false},
                {"HTTP/1.1 500 Broken\r\nContent-Length: 0\r\n\r\n", false},
                {"no HTTP at all", false},
                {"", false}};
    for (const auto& row : rows) {
        AnsweringServer server(row.answer);
        CrashReporter another(home.path(), home.path());
        const QString path = leaveReport("why");
        another.setBackendURL(server.address());
        another.startMonitoring();
        ASSERT_TRUE(waitUntil([&] { return another.runningFlows() == 0; }));
        EXPECT_EQ(QFile::exists(path), !row.isTaken) << row.answer.constData();
        ASSERT_FALSE(server.requests.isEmpty()) << row.answer.constData();
        EXPECT_TRUE(server.requests[0].startsWith("POST /api/crash-report HTTP/1.1\r\n"));
        // The case of a header's name is Qt's affair.
        EXPECT_TRUE(server.requests[0].toLower().contains("content-type: application/json\r\n"));
        QFile::remove(path);
    }
}

TEST_F(CrashReporterTest, WithoutAnAddressNothingIsSentAndWhatIsNoReportGoes) {
    const QString path = leaveReport("why");
    const QString other = crashReportPath(reporter.reportDirectory(), "half");
    leaveFile(other, R"({"id":"half"})");
    const QString foreign = reporter.reportDirectory() + "/notes.txt";
    leaveFile(foreign, "mine");
    send(QString());
    EXPECT_TRUE(QFile::exists(path));
    EXPECT_FALSE(QFile::exists(other));
    EXPECT_TRUE(QFile::exists(foreign));
}

} // namespace
} // namespace harbrix
