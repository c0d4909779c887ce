#include "base/Socket.h"
#include "tests/pps/PpsFixture.h"

#include <sys/socket.h>

#include <future>
#include <numeric>
#include <thread>
#include <vector>

namespace zm::test {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

// Reads until `wanted` is the text; what was read last otherwise.
std::string readUntil(PpsFile& file, const std::string& wanted) {
    const auto deadline = Clock::now() + 5s;
    std::string last;
    while (Clock::now() < deadline) {
        auto text = file.read();
        last = text ? *text : "error: " + text.error();
        if (last == wanted) {
            return last;
        }
        std::this_thread::sleep_for(1ms);
    }
    return last;
}

} // namespace

TEST_F(PpsTest, ARestartedServiceIsFoundAgainAndThePresentStateDelivered) {
    auto reader = open("/pps/a?delta");
    auto writer = open("/pps/a", WriteCreate);
    write(writer, "x::1\n");
    read(reader);
    service.stop();
    EXPECT_TRUE(readable(reader)) << "a reader that polls is woken";
    EXPECT_NE(read(reader).find("not reachable"), std::string::npos);
    EXPECT_EQ(reader.pollFd(), -1);
    service.start();
    EXPECT_EQ(readUntil(reader, "@a\n"), "@a\n") << "all objects are gone with the service";
    EXPECT_EQ(write(writer, "x::2\n"), "") << "the writer finds the new service by itself";
    EXPECT_EQ(readUntil(reader, "@a\nx::2\n"), "@a\nx::2\n");
}

TEST_F(PpsTest, AReaderThatOnlyPollsFindsTheNewServiceAndItsState) {
    auto reader = open("/pps/a?delta");
    read(reader);
    service.stop();
    service.start();
    auto writer = open("/pps/a", WriteCreate);
    write(writer, "x::1\n");
    const auto deadline = Clock::now() + 5s;
    std::string text;
    while (text.empty() && Clock::now() < deadline) {
        pollfd ready{reader.pollFd(), POLLIN, 0};
        ::poll(&ready, 1, 20);
        auto result = reader.read();
        text = result ? *result : "";
    }
    EXPECT_EQ(text, "@a\nx::1\n");
}

TEST_F(PpsTest, AWriteWhileTheServiceIsAwayFailsClearlyAfterAShortWhile) {
    auto writer = open("/pps/a", WriteCreate);
    service.stop();
    const auto begin = Clock::now();
    EXPECT_NE(write(writer, "x::1\n").find("/pps/a: the PPS service is not reachable"), std::string::npos);
    EXPECT_LT(Clock::now() - begin, 2s);
}

TEST_F(PpsTest, AWriteDuringARestartArrives) {
    auto writer = open("/pps/a", WriteCreate);
    service.stop();
    std::string result = "not written";
    const auto deadline = Clock::now() + 5s;
    std::thread restart([&] { service.start(); });
    while (!(result = write(writer, "x::1\n")).empty() && Clock::now() < deadline) {
    }
    restart.join();
    EXPECT_EQ(result, "");
    auto reader = open("/pps/a", ReadOnly);
    EXPECT_EQ(read(reader), "@a\nx::1\n");
}

TEST_F(PpsTest, AReconnectedDescriptorDoesNotTruncateAgain) {
    auto control = open("/pps/control?delta", ReadWriteCreateTruncate);
    service.stop();
    service.start();
    auto other = open("/pps/control", WriteCreate);
    write(other, "zmcmd::1\n");
    EXPECT_EQ(readUntil(control, "@control\nzmcmd::1\n"), "@control\nzmcmd::1\n");
}

TEST_F(PpsTest, AReaderThatWaitsSurvivesARestart) {
    auto reader = open("/pps/a?delta,wait");
    read(reader);
    std::promise<void> waits;
    auto answers = std::async(std::launch::async, [&] {
        std::vector<std::string> texts;
        waits.set_value();
        do {
            texts.push_back(read(reader));
        } while (texts.back() == "@a\n");
        return texts;
    });
    waits.get_future().wait();
    service.stop();
    service.start();
    auto writer = open("/pps/a", WriteCreate);
    write(writer, "x::1\n");
    const bool answered = answers.wait_for(10s) == std::future_status::ready;
    if (!answered) {
        write(writer, "y::1\n"); // ends the waiting
    }
    // It may have come back before the write: it then was told of the empty object first.
    const std::vector<std::string> texts = answers.get();
    EXPECT_TRUE(answered);
    EXPECT_EQ(texts.back(), "@a\nx::1\n") << "the change is there";
    EXPECT_LE(texts.size(), 2u);
}

TEST_F(PpsTest, AClientThatNeverReadsHurtsNobody) {
    auto stalled = open("/pps/a?delta");
    auto writer = open("/pps/a", WriteCreate);
    auto reader = open("/pps/a?delta", ReadOnly);
    read(reader);
    const std::string line = "x::" + std::string(1000, 'v') + "\n";
    read(stalled);
    for (int i = 0; i < 2000; ++i) {
        ASSERT_EQ(write(writer, line), "");
        ASSERT_EQ(read(reader), "@a\n" + line);
    }
    EXPECT_TRUE(read(stalled).starts_with("|@a\n")) << "it loses only its own changes";
}

TEST_F(PpsTest, AClientThatAsksAndTakesNoAnswersIsCutOff) {
    auto big = open("/pps/a");
    write(big, "x::" + std::string(30000, 'v') + "\n");
    auto fd = connectUnix(socket);
    ASSERT_TRUE(fd);
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends), 0);
    UniqueFd own(ends[0]);
    UniqueFd theirs(ends[1]);
    SyncConnection greedy(std::move(*fd));
    ASSERT_TRUE(greedy.send("o0 /pps/a", {theirs.get()}));
    theirs.reset();
    bool cutOff = false;
    for (int i = 0; i < 100000 && !cutOff; ++i) {
        cutOff = !greedy.send("r");
    }
    EXPECT_TRUE(cutOff);
    EXPECT_EQ(write(big, "x::1\n"), "") << "the others are served as before";
}

TEST_F(PpsTest, RequestsAgainstTheProtocolAreRefusedAndTheServiceLives) {
    for (const char* request : {"", "r", "w", "x", "o", "o1", "o999999999999999999999 /pps/a", "o258 /pps/a",
                                "u", "u/etc/passwd", "t"}) {
        auto fd = connectUnix(socket);
        ASSERT_TRUE(fd);
        SyncConnection client(std::move(*fd));
        ASSERT_TRUE(client.send(request));
        const auto answer = client.receive(5s);
        ASSERT_TRUE(answer) << request;
        EXPECT_TRUE(answer->text.starts_with("e")) << request << answer->text;
    }
    EXPECT_TRUE(ppsList(socket)->empty());
}

TEST_F(PpsTest, ANoticeDescriptorThatBlocksDoesNotStopTheService) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    UniqueFd readEnd(pipe[0]);
    UniqueFd writeEnd(pipe[1]);
    auto fd = connectUnix(socket);
    ASSERT_TRUE(fd);
    SyncConnection client(std::move(*fd));
    ASSERT_TRUE(client.send("o258 /pps/a?delta", {writeEnd.get()}));
    EXPECT_EQ(client.receive(5s)->text, "k");
    auto writer = open("/pps/a", WriteCreate);
    EXPECT_EQ(write(writer, "x::1\n"), "");
}

TEST_F(PpsTest, TheServiceKeepsABoundedNumberOfBytes) {
    std::string result;
    std::vector<PpsFile> files;
    const std::string large = "x::" + std::string(32000, 'v') + "\n";
    for (int i = 0; i < 2000 && result.empty(); ++i) {
        auto file = open("/pps/o" + std::to_string(i));
        result = write(file, large);
    }
    EXPECT_NE(result.find("ENOSPC"), std::string::npos);
    ASSERT_TRUE(ppsUnlink(socket, "/pps/o0"));
    auto again = open("/pps/o0");
    EXPECT_EQ(write(again, large), "") << "deleting gives the space back";
}

namespace {

// Takes changes "w<writer>::<number>", as `writers` times `changes` were written; the numbers of each writer in their
// order. Only woken by its descriptor: a notice that gets lost shows as a time-out.
std::vector<std::vector<int>> takeChanges(PpsFile& reader, int writers, int changes) {
    std::vector<std::vector<int>> taken(static_cast<size_t>(writers));
    for (int seen = 0; seen < writers * changes;) {
        pollfd ready{reader.pollFd(), POLLIN, 0};
        if (::poll(&ready, 1, 20'000) != 1) {
            break;
        }
        const auto text = reader.read();
        for (size_t at = 0; text && (at = text->find("\nw", at)) != std::string::npos; ++at, ++seen) {
            taken.at(static_cast<size_t>((*text)[at + 2] - '0')).push_back(std::stoi(text->substr(at + 5)));
        }
    }
    return taken;
}

std::vector<int> countedTo(int end) {
    std::vector<int> numbers(static_cast<size_t>(end));
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

} // namespace

TEST_F(PpsTest, ManyWritersAndReadersLoseNothing) {
    constexpr int Writers = 3;
    constexpr int Readers = 3;
    constexpr int Changes = 500;
    std::vector<PpsFile> readers;
    for (int r = 0; r < Readers; ++r) {
        readers.push_back(open("/pps/a?delta"));
        read(readers.back());
    }
    std::vector<std::future<std::vector<std::vector<int>>>> taken;
    for (PpsFile& reader : readers) {
        taken.push_back(
            std::async(std::launch::async, [&reader] { return takeChanges(reader, Writers, Changes); }));
    }
    std::vector<std::thread> threads;
    for (int w = 0; w < Writers; ++w) {
        threads.emplace_back([&, w] {
            auto file = open("/pps/a", WriteCreate);
            for (int i = 0; i < Changes; ++i) {
                ASSERT_EQ(write(file, "w" + std::to_string(w) + "::" + std::to_string(i) + "\n"), "");
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    const std::vector<std::vector<int>> everything(Writers, countedTo(Changes));
    for (auto& changes : taken) {
        EXPECT_EQ(changes.get(), everything);
    }
}

TEST_F(PpsTest, OneDescriptorIsWrittenByOneThreadAndReadByAnother) {
    auto shared = open("/pps/a?delta");
    auto other = open("/pps/a?delta");
    read(shared);
    read(other);
    constexpr int Changes = 300;
    std::thread writing([&] {
        for (int i = 0; i < Changes; ++i) {
            ASSERT_EQ(write(shared, "mine::" + std::to_string(i) + "\n"), "");
        }
    });
    std::thread foreign([&] {
        for (int i = 0; i < Changes; ++i) {
            ASSERT_EQ(write(other, "theirs::" + std::to_string(i) + "\n"), "");
        }
    });
    std::string text;
    const std::string last = "theirs::" + std::to_string(Changes - 1) + "\n";
    while (text.find(last) == std::string::npos) {
        ASSERT_TRUE(readable(shared, 10s));
        text += read(shared);
    }
    writing.join();
    foreign.join();
    EXPECT_EQ(text.find("mine"), std::string::npos);
}

TEST_F(PpsTest, AReadAfterAWriteElsewhereHasReturnedSeesIt) {
    auto writer = open("/pps/a", WriteCreate);
    auto reader = open("/pps/a?delta", ReadOnly);
    read(reader);
    for (int i = 0; i < 500; ++i) {
        const std::string line = "x::" + std::to_string(i) + "\n";
        ASSERT_EQ(write(writer, line), "");
        ASSERT_TRUE(readable(reader));
        ASSERT_EQ(read(reader), "@a\n" + line);
    }
}

TEST_F(PpsTest, TenThousandChangesAreDeliveredInOrderWhileTheyAreWritten) {
    auto writer = open("/pps/a", WriteCreate);
    auto reader = open("/pps/a?delta", ReadOnly);
    read(reader);
    constexpr int Changes = 10000;
    auto reading = std::async(std::launch::async, [&] { return takeChanges(reader, 1, Changes); });
    const auto begin = Clock::now();
    for (int i = 0; i < Changes; ++i) {
        ASSERT_EQ(write(writer, "w0::" + std::to_string(i) + "\n"), "");
    }
    const std::chrono::duration<double> elapsed = Clock::now() - begin;
    EXPECT_EQ(reading.get().at(0), countedTo(Changes));
    RecordProperty("writes_per_second", static_cast<int>(Changes / elapsed.count()));
    std::printf("%.0f writes a second with a reader\n", Changes / elapsed.count());
}

} // namespace zm::test
