#include "ScriptedServer.h"
#include "mount_nfs/files/DirectoryReader.h"
#include "mount_nfs/files/Inode.h"
#include "mount_nfs/files/ReadAhead.h"
#include "mount_nfs/files/WriteBehind.h"
#include "mount_nfs/session/Operations.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>

using namespace harbrix::nfs;

namespace {

template <typename T>
Status statusOf(const Outcome<T>& outcome) {
    return outcome ? Status::Ok : outcome.error();
}

using namespace std::chrono_literals;
using Data = std::vector<std::uint8_t>;

class Behaviour : public testing::Test {
protected:
    void SetUp() override {
        bool established = false;
        session.start([&] { established = true; }, [](const std::string&, Status) {});
        wait([&] { return established; });
        state->handle = file;
        state->stateid.sequence = 1;
        state->owner = session.newOwner();
        session.track(state);
    }

    void wait(const std::function<bool()>& done) {
        bool late = false;
        const auto timer = loop.after(10s, [&] { late = true; });
        loop.runUntil([&] { return late || done(); });
        loop.cancel(timer);
        ASSERT_TRUE(done()) << "nothing came within ten seconds";
    }

    Status flush() {
        std::optional<Status> status;
        writes->flush([&](Status outcome) { status = outcome; });
        wait([&] { return status.has_value(); });
        return status.value_or(Status::LocalTimedOut);
    }

    Outcome<Data> read(std::uint64_t offset, std::uint32_t size) {
        std::optional<Outcome<Data>> result;
        reads->read(offset, size, [&](Outcome<std::vector<Slice>> slices) {
            if (!slices) {
                result = std::unexpected(slices.error());
                return;
            }
            Data data;
            for (const Slice& slice : *slices)
                data.insert(data.end(), slice.bytes.begin(), slice.bytes.end());
            result = std::move(data);
        });
        wait([&] { return result.has_value(); });
        return result.value_or(std::unexpected(Status::LocalTimedOut));
    }

    static Limits shortLimits() {
        Limits limits;
        limits.probeAfter = 100ms;
        limits.metadata = 300ms;
        limits.data = 900ms;
        limits.reconnectAfter = 600ms;
        return limits;
    }

    EventLoop loop;
    BufferPool pool{16 << 20};
    ScriptedServer server{loop};
    Session session{loop, pool, {{server.address()}, SourcePort::Any, 1, {}, shortLimits()}};
    Operations operations{session};
    FileHandle file{Data{1, 2, 3}};
    std::shared_ptr<OpenState> state = std::make_shared<OpenState>();
    std::shared_ptr<Inode> inode = std::make_shared<Inode>(2, file);
    std::shared_ptr<WriteBehind> writes = std::make_shared<WriteBehind>(operations, pool, 4096);
    std::shared_ptr<ReadAhead> reads =
        std::make_shared<ReadAhead>(operations, pool, inode, state, 64 * 1024);
};

TEST_F(Behaviour, OverlappingWritesEndInTheirOrder) {
    server.setDisorderly();
    std::mt19937 random(5);
    Data model;
    for (int round = 0; round < 20; ++round) {
        for (int step = 0; step < 30; ++step) {
            const std::size_t offset = random() % 20000;
            const Data data(random() % 6000 + 1, static_cast<std::uint8_t>(random()));
            model.resize(std::max(model.size(), offset + data.size()));
            std::copy(data.begin(), data.end(),
                      model.begin() + static_cast<std::ptrdiff_t>(offset));
            writes->write(state, offset, data);
        }
        ASSERT_EQ(flush(), Status::Ok);
        ASSERT_EQ(server.committed, model) << round;
    }
    writes.reset();
    EXPECT_EQ(pool.used(), 0u);
}

TEST_F(Behaviour, DataThatARestartLostIsSentAgain) {
    const Data first(20000, 'a'), second(5000, 'b');
    writes->write(state, 0, first);
    wait([&] { return writes->isDrained(); });
    EXPECT_TRUE(server.committed.empty());
    server.reboot();
    writes->write(state, 3000, second);
    ASSERT_EQ(flush(), Status::Ok);
    Data expected = first;
    std::copy(second.begin(), second.end(), expected.begin() + 3000);
    EXPECT_EQ(server.committed, expected);
}

TEST_F(Behaviour, AServerThatForgetsEveryTimeIsAnErrorInTheEnd) {
    std::uint8_t instance = 0;
    server.script(Op::Commit, [&](XdrReader& in, XdrWriter& out) {
        (void) in.u64(), (void) in.u32();
        out.fixed(Verifier{++instance, 99});
        return Status::Ok;
    });
    writes->write(state, 0, Data(20000, 'a'));
    EXPECT_EQ(flush(), Status::Io);
}

TEST_F(Behaviour, AFailedWriteIsToldOnce) {
    server.script(Op::Write, [](XdrReader&, XdrWriter&) { return Status::NoSpc; });
    writes->write(state, 0, Data(10, 'a'));
    EXPECT_EQ(flush(), Status::NoSpc);
    EXPECT_EQ(flush(), Status::Ok);
}

TEST_F(Behaviour, ShortReadsArePutTogether) {
    server.readLimit = 1000;
    server.file.resize(50'000);
    for (std::size_t at = 0; at < server.file.size(); ++at)
        server.file[at] = static_cast<std::uint8_t>(at / 7);
    inode->attributes.size = server.file.size();
    Data all;
    while (true) {
        const auto part = read(all.size(), 7000);
        ASSERT_TRUE(part);
        if (part->empty())
            break;
        all.insert(all.end(), part->begin(), part->end());
    }
    EXPECT_EQ(all, server.file);
}

TEST_F(Behaviour, AReadWithoutProgressIsAnError) {
    server.file.resize(5000);
    server.readLimit = 0;
    server.script(Op::Read, [](XdrReader& in, XdrWriter& out) {
        (void) in.fixed(16), (void) in.u64(), (void) in.u32();
        out.boolean(false), out.u32(0);
        return Status::Ok;
    });
    EXPECT_EQ(statusOf(read(0, 100)), Status::Io);
}

TEST_F(Behaviour, ADirectoryWhoseCookiesGoRoundEnds) {
    server.script(Op::ReadDir, [](XdrReader& in, XdrWriter& out) {
        const std::uint64_t cookie = in.u64();
        (void) in.fixed(8), (void) in.u32(), (void) in.u32(), (void) AttrMask::decode(in);
        out.u64(1);
        out.boolean(true);
        out.u64(cookie == 5 ? 3 : cookie + 1); // 3, 4, 5, 3, ...
        out.text("name");
        AttrMask{}.encode(out);
        out.opaque({});
        out.boolean(false), out.boolean(false);
        return Status::Ok;
    });
    auto directory = std::make_shared<DirectoryReader>(operations, Credentials{}, file, 4096);
    std::uint64_t cookie = 0;
    std::optional<Status> failure;
    for (int page = 0; page < 20 && !failure; ++page) {
        bool answered = false;
        directory->after(cookie, [&](Outcome<DirectoryReader::View> view) {
            answered = true;
            if (!view)
                failure = view.error();
            else
                cookie = view->page->entries.at(view->index).cookie;
        });
        wait([&] { return answered; });
    }
    EXPECT_EQ(failure, Status::Io);
}

TEST_F(Behaviour, BusyAndForgetfulServersAreAskedAgain) {
    for (const Status busy : {Status::Delay, Status::Grace, Status::RetryUncachedRep}) {
        int refusals = 2;
        server.script(Op::Commit, [&](XdrReader& in, XdrWriter& out) {
            (void) in.u64(), (void) in.u32();
            if (refusals-- > 0)
                return busy;
            out.fixed(Verifier{});
            return Status::Ok;
        });
        std::optional<Outcome<Verifier>> outcome;
        operations.commit(state, [&](Outcome<Verifier> result) { outcome = result; });
        wait([&] { return outcome.has_value(); });
        EXPECT_TRUE(outcome && outcome->has_value());
    }
}

TEST_F(Behaviour, AnOpenFileThatTheServerLostIsOpenedAgain) {
    bool lost = true;
    server.script(Op::Read, [&](XdrReader& in, XdrWriter& out) {
        (void) in.fixed(16), (void) in.u64(), (void) in.u32();
        if (lost)
            return Status::BadStateid;
        out.boolean(true), out.text("found");
        return Status::Ok;
    });
    server.script(Op::Open, [&](XdrReader& in, XdrWriter& out) {
        for (int word = 0; word < 3 + 2; ++word)
            (void) in.u32();
        (void) in.opaque(100), (void) in.u32(), (void) in.u32();
        lost = false;
        for (int word = 0; word < 4 + 5 + 1 + 1; ++word)
            out.u32(0);
        out.u32(0);
        return Status::Ok;
    });
    const auto data = read(0, 100);
    ASSERT_TRUE(data);
    EXPECT_EQ(std::string(data->begin(), data->end()), "found");
    EXPECT_EQ(server.calls[Op::Open], 1);
}

TEST_F(Behaviour, SpoiledAnswersEndEveryCall) {
    server.file.assign(50'000, 'x');
    inode->attributes.size = server.file.size();
    std::mt19937 random(11);
    server.setSpoiler([&](std::vector<std::uint8_t>& answer) {
        // Mostly behind the record mark, the xid and the reply's head: what is deeper inside.
        const std::size_t from =
            random() % 8 == 0 ? 0 : std::min<std::size_t>(28, answer.size() - 1);
        for (std::uint32_t change = random() % 3; change > 0; --change)
            answer[from + random() % (answer.size() - from)] = static_cast<std::uint8_t>(random());
    });
    int succeeded = 0, failed = 0;
    const TimePoint end = Clock::now() + 4s;
    while (Clock::now() < end) {
        std::optional<Status> status;
        operations.getAttributes({}, file, [&](Outcome<Node> node) { status = statusOf(node); });
        wait([&] { return status.has_value(); });
        const auto data = read(random() % 50'000, 3000);
        ++(data ? succeeded : failed);
    }
    EXPECT_GT(succeeded, 0);
    EXPECT_GT(failed, 0);
}

TEST_F(Behaviour, ASilentServerDelaysOnlyTheFirst) {
    server.setSilent(true);
    const auto ask = [&] {
        std::optional<Status> status;
        const TimePoint start = Clock::now();
        operations.getAttributes({}, file, [&](Outcome<Node> node) { status = statusOf(node); });
        wait([&] { return status.has_value(); });
        EXPECT_EQ(status, Status::LocalTimedOut);
        return Clock::now() - start;
    };
    EXPECT_GE(ask(), 300ms);
    EXPECT_LT(ask(), 200ms);
    server.setSilent(false);
    wait([&] { return !session.isStalled(); });
}

} // namespace
