#include "services/FrameSymbols.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <execinfo.h>

#include <array>
#include <cstdlib>

namespace harbrix {
namespace {

/// Of this function and those that called it; one that stands in for backtrace(3), as sanitizers
/// bring it, may come first.
[[gnu::noinline]] QStringList framesFromHere() {
    std::array<void*, 16> addresses{};
    const int count = ::backtrace(addresses.data(), addresses.size());
    char** const symbols = ::backtrace_symbols(addresses.data(), count);
    QStringList frames;
    for (int i = 0; i < count; ++i)
        frames << QFile::decodeName(symbols[i]);
    std::free(symbols);
    return frames;
}

QString run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished() && process.exitCode() == 0) << program.toStdString();
    return QString::fromLocal8Bit(process.readAllStandardOutput());
}

class FrameSymbolsTest : public testing::Test {
protected:
    const QString program = QFileInfo("/proc/self/exe").canonicalFilePath();
    FrameOrigin origin{
        .executable = program, .homeDirectory = "/home/ann", .time = QDateTime::currentDateTime()};
    QTemporaryDir folder;

    /// What is added to a frame, empty if nothing is.
    [[nodiscard]] QString added(const QString& frame, const QString& debugPath = "/none") const {
        const QString whole = withSymbols({frame}, origin, debugPath).value(0);
        EXPECT_TRUE(whole.startsWith(frame)) << whole.toStdString();
        return whole.mid(frame.size());
    }
    /// The frame of framesFromHere(), as if the program were called so.
    [[nodiscard]] QString frameOf(const QString& module) const {
        return module + m_frame.mid(m_frame.indexOf("("));
    }

private:
    [[nodiscard]] QString findFrame() const {
        for (const QString& frame : framesFromHere())
            if (withSymbols({frame}, origin).first().contains("framesFromHere"))
                return frame;
        return {};
    }

    const QString m_frame = findFrame();
};

const QString known = " harbrix::(anonymous namespace)::framesFromHere() at FrameSymbolsTest.cpp:";

TEST_F(FrameSymbolsTest, AFrameIsFoundByWhateverTheProgramWasCalled) {
    for (const QString& name :
         {program, QFileInfo(program).fileName(), "./" + QFileInfo(program).fileName()})
        EXPECT_TRUE(added(frameOf(name)).startsWith(known)) << added(frameOf(name)).toStdString();
    origin.homeDirectory = QFileInfo(program).path();
    EXPECT_TRUE(added(frameOf("~/" + QFileInfo(program).fileName())).startsWith(known));
}

TEST_F(FrameSymbolsTest, WhatCannotBeToldStays) {
    const QString fifo = folder.filePath("fifo");
    run("mkfifo", {fifo});
    const QString text = folder.filePath("text");
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("no ELF") > 0);
    file.close();
    for (const QString& frame :
         {frameOf("/nowhere/at/all"), frameOf("another-program"), frameOf(fifo), frameOf(text),
          program + "(no_such_symbol+0x10) [0x55d0c81a71c2]",
          program + "(+0xfffffffffffffff0) [0x55d0c81a71c2]", program + "() [0x1]",
          QString("[0x55d0c81a71c2]"), QString()})
        EXPECT_EQ(added(frame), "") << frame.toStdString();
}

TEST_F(FrameSymbolsTest, AModuleThatCameAfterTheCrashIsAnotherOne) {
    origin.time = QFileInfo(program).metadataChangeTime().addSecs(-1);
    EXPECT_EQ(added(frameOf(program)), "");
}

TEST_F(FrameSymbolsTest, AStrippedModuleIsNamedByItsDebugInformationElsewhere) {
    const QString stripped = folder.filePath("stripped");
    run("strip", {"-o", stripped, program});
    origin.time = QDateTime::currentDateTime().addSecs(1);
    EXPECT_EQ(added(frameOf(stripped)), "");

    const QString notes = run("readelf", {"--notes", program});
    const QString id = QRegularExpression("Build ID: ([0-9a-f]+)").match(notes).captured(1);
    ASSERT_FALSE(id.isEmpty()) << notes.toStdString();
    const QString place = folder.filePath(".build-id/" + id.left(2));
    ASSERT_TRUE(QDir().mkpath(place));
    run("objcopy", {"--only-keep-debug", program, place + "/" + id.mid(2) + ".debug"});
    EXPECT_TRUE(added(frameOf(stripped), folder.path()).startsWith(known));
}

} // namespace
} // namespace harbrix
