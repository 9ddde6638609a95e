#include "mount_smbfs/NodeTable.h"
#include "mount_smbfs/ReadAhead.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <random>

namespace harbrix {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

TEST(NodeTable, PathsFollowRenames) {
    NodeTable nodes;
    const auto folder = nodes.lookUp(NodeTable::root, "folder");
    const auto file = nodes.lookUp(folder, "file");
    EXPECT_EQ(nodes.path(file), "folder/file");
    nodes.rename(NodeTable::root, "folder", NodeTable::root, "moved");
    EXPECT_EQ(nodes.path(file), "moved/file");
    EXPECT_EQ(nodes.lookUp(folder, "file"), file);
    const auto other = nodes.lookUp(NodeTable::root, "other");
    nodes.rename(NodeTable::root, "other", folder, "file");
    EXPECT_EQ(nodes.path(other), "moved/file");
    EXPECT_FALSE(nodes.path(file)) << "it was replaced";
    nodes.rename(folder, "file", folder, "file");
    EXPECT_EQ(nodes.path(other), "moved/file");
}

TEST(NodeTable, ANumberLivesWhileTheKernelKnowsIt) {
    NodeTable nodes;
    const auto folder = nodes.lookUp(NodeTable::root, "d");
    const auto file = nodes.lookUp(folder, "f");
    EXPECT_EQ(nodes.lookUp(folder, "f"), file);
    nodes.forget(folder, 1);
    EXPECT_EQ(nodes.path(file), "d/f") << "the path still leads through the folder";
    nodes.forget(file, 1);
    EXPECT_EQ(nodes.path(file), "d/f");
    nodes.forget(file, 1);
    EXPECT_FALSE(nodes.path(file));
    EXPECT_FALSE(nodes.path(folder));
    EXPECT_NE(nodes.lookUp(NodeTable::root, "d"), folder) << "numbers are not used again";
}

TEST(NodeTable, ARemovedNameIsFree) {
    NodeTable nodes;
    const auto file = nodes.lookUp(NodeTable::root, "f");
    nodes.remove(NodeTable::root, "f");
    EXPECT_FALSE(nodes.path(file));
    EXPECT_NE(nodes.lookUp(NodeTable::root, "f"), file);
    nodes.forget(file, 1);
    EXPECT_TRUE(nodes.find(NodeTable::root, "f")) << "the old one's end leaves the new one alone";
}

TEST(NodeTable, AnotherFileOfTheNameGetsAnotherNumber) {
    const auto answer = [](ino_t identity) {
        Answer made{{}, steady_clock::now()};
        made.attributes.st_ino = identity;
        return made;
    };
    NodeTable nodes;
    const auto first = nodes.lookUp(NodeTable::root, "f", answer(1));
    EXPECT_EQ(nodes.lookUp(NodeTable::root, "f", answer(1)), first);
    EXPECT_EQ(nodes.lookUp(NodeTable::root, "f", answer(0)), first) << "the server does not say";
    EXPECT_EQ(nodes.lookUp(NodeTable::root, "f", answer(2)), first) << "nor did it the last time";
    EXPECT_NE(nodes.lookUp(NodeTable::root, "f", answer(3)), first);
    EXPECT_FALSE(nodes.path(first));
}

TEST(NodeTable, TellsWhatLiesBelow) {
    NodeTable nodes;
    const auto folder = nodes.lookUp(NodeTable::root, "d");
    const auto inside = nodes.lookUp(nodes.lookUp(folder, "e"), "f");
    const auto outside = nodes.lookUp(NodeTable::root, "g");
    EXPECT_EQ(nodes.within(folder, {inside, outside, folder}),
              (std::vector<NodeTable::Number>{inside, folder}));
}

TEST(Watchdog, CallsInTimeAgainAndNotAfterCancelling) {
    Watchdog watchdog;
    std::promise<void> second;
    std::atomic<int> calls = 0;
    std::atomic<bool> wrong = false;
    Watchdog::Alarm cancelled(watchdog, steady_clock::now() + 20ms,
                              [&]() -> std::optional<Watchdog::TimePoint> {
                                  wrong = true;
                                  return std::nullopt;
                              });
    const Watchdog::Alarm late(watchdog, steady_clock::now() + 1h,
                               [&]() -> std::optional<Watchdog::TimePoint> {
                                   wrong = true;
                                   return std::nullopt;
                               });
    const auto begin = steady_clock::now();
    const Watchdog::Alarm twice(watchdog, begin + 30ms,
                                [&]() -> std::optional<Watchdog::TimePoint> {
                                    if (++calls == 1)
                                        return steady_clock::now() + 10ms;
                                    second.set_value();
                                    return std::nullopt;
                                });
    cancelled.cancel();
    ASSERT_EQ(second.get_future().wait_for(10s), std::future_status::ready);
    EXPECT_GE(steady_clock::now() - begin, 40ms);
    EXPECT_FALSE(wrong);
}

TEST(Watchdog, CancellingWaitsForTheRunningCall) {
    Watchdog watchdog;
    std::promise<void> started;
    std::atomic<bool> hasFinished = false;
    Watchdog::Alarm alarm(watchdog, steady_clock::now(),
                          [&]() -> std::optional<Watchdog::TimePoint> {
                              started.set_value();
                              std::this_thread::sleep_for(50ms);
                              hasFinished = true;
                              return steady_clock::now() + 1h;
                          });
    started.get_future().wait();
    alarm.cancel();
    EXPECT_TRUE(hasFinished);
}

TEST(BufferPool, GivesOutNoMoreThanItsLimit) {
    Watchdog watchdog;
    BufferPool pool(2, watchdog);
    auto first = pool.take();
    const auto second = pool.take();
    EXPECT_TRUE(first && second);
    EXPECT_FALSE(pool.take());
    first.reset();
    EXPECT_TRUE(pool.take());
}

// A file in memory, read through ReadAhead as OpenFile does it.
class ReadAheadTest : public testing::Test {
protected:
    ReadAheadTest() : m_content((9 << 20) + 12345, '\0') {
        std::mt19937 random(3);
        for (std::size_t i = 0; i < m_content.size(); i += 97)
            m_content[i] = static_cast<char>(random());
    }

    Outcome<std::size_t> fetch(std::span<char> buffer, off_t offset) {
        ++m_fetches;
        if (m_failsAt && offset == *m_failsAt)
            return std::unexpected(EIO);
        const auto at = std::min(static_cast<std::size_t>(offset), m_content.size());
        const std::size_t count = std::min(buffer.size(), m_content.size() - at);
        std::copy_n(m_content.begin() + static_cast<std::ptrdiff_t>(at), count, buffer.begin());
        return count;
    }

    // The jobs of a real file keep it alive; here they are waited for.
    void TearDown() override { m_jobs.reset(); }

    std::string read(std::size_t size, off_t offset) {
        const auto function = [this](std::span<char> buffer, off_t at) {
            return fetch(buffer, at);
        };
        if (const auto result = m_ahead.take(size, offset, nullptr, function)) {
            ++m_hits;
            return std::string(result->bytes.begin(), result->bytes.end());
        }
        const auto at = std::min(static_cast<std::size_t>(offset), m_content.size());
        return std::string(m_content.substr(at, size));
    }

    std::string m_content;
    std::optional<off_t> m_failsAt;
    std::atomic<int> m_fetches = 0;
    int m_hits = 0;
    Watchdog m_watchdog;
    BufferPool m_buffers{8, m_watchdog};
    std::optional<JobQueue> m_jobs{std::in_place, 3};
    ReadAhead m_ahead{*m_jobs, m_buffers, m_watchdog};
};

TEST_F(ReadAheadTest, ASequentialReaderGetsEveryByteFromBlocks) {
    for (std::size_t size : {std::size_t{128} << 10, std::size_t{1} << 20}) {
        m_ahead.drop();
        m_hits = 0;
        for (std::size_t at = 0; at < m_content.size() + size; at += size) {
            ASSERT_EQ(read(size, static_cast<off_t>(at)),
                      m_content.substr(std::min(at, m_content.size()), size))
                << at;
        }
        EXPECT_GT(m_hits, 8);
    }
}

TEST_F(ReadAheadTest, RequestsOutOfOrderAreStillOneReader) {
    for (std::size_t pair = 0; pair < 20; ++pair) {
        const std::size_t at = pair * (256 << 10);
        for (std::size_t half : {std::size_t{1}, std::size_t{0}}) {
            const std::size_t offset = at + half * (128 << 10);
            ASSERT_EQ(read(128 << 10, static_cast<off_t>(offset)),
                      m_content.substr(offset, 128 << 10));
        }
    }
    EXPECT_GT(m_hits, 20);
}

TEST_F(ReadAheadTest, ARandomReaderCausesNoReadingAhead) {
    std::mt19937 random(5);
    for (int i = 0; i < 50; ++i) {
        const auto at = ((random() % 4) * 2 + (static_cast<unsigned>(i) % 2)) << 20;
        ASSERT_EQ(read(4096, static_cast<off_t>(at)), m_content.substr(at, 4096));
    }
    EXPECT_LE(m_fetches, 2);
}

TEST_F(ReadAheadTest, AfterADropTheNewContentIsRead) {
    std::size_t at = 0;
    for (; at < std::size_t{4} << 20; at += 1 << 20)
        ASSERT_EQ(read(1 << 20, static_cast<off_t>(at)), m_content.substr(at, 1 << 20));
    for (char& c : m_content)
        c = static_cast<char>(c + 1);
    m_ahead.drop();
    for (; at < m_content.size(); at += 1 << 20)
        ASSERT_EQ(read(1 << 20, static_cast<off_t>(at)), m_content.substr(at, 1 << 20));
}

TEST_F(ReadAheadTest, AFailureIsLeftToTheReaderItself) {
    m_failsAt = off_t{4} << 20;
    for (std::size_t at = 0; at < m_content.size(); at += 1 << 20)
        ASSERT_EQ(read(1 << 20, static_cast<off_t>(at)), m_content.substr(at, 1 << 20));
}

} // namespace
} // namespace harbrix
