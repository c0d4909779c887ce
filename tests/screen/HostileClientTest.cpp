#include "tests/screen/ScreenFixture.h"

#include <sys/socket.h>

namespace zm::test {

TEST_F(ScreenTest, AClientHasToSayHelloFirst) {
    RawClient silent(socket, "");
    EXPECT_NE(silent.refusal({{"t", "props"}}).find("hello"), std::string::npos);
    RawClient unknown(socket, "");
    EXPECT_NE(unknown.refusal({{"t", "hello"}, {"role", "root"}}).find("unknown role"), std::string::npos);
    RawClient twice(socket, "app");
    EXPECT_NE(twice.refusal({{"t", "hello"}, {"role", "video"}}), "");
}

TEST_F(ScreenTest, UnknownKindsAndMembersAreIgnored) {
    RawClient app(socket, "app");
    app.send({{"t", "novelty"}, {"x", 1}});
    app.send({{"t", "sync"}, {"id", {{"any", "thing"}}}, {"extra", nullptr}});
    EXPECT_EQ(app.receive(), (Json{{"t", "synced"}, {"id", {{"any", "thing"}}}}));
}

TEST_F(ScreenTest, WhatIsNoMessageEndsTheConnection) {
    for (const std::string& text :
         {std::string("no json"), std::string("[1]"), std::string("{}"), std::string("{\"t\":5}"),
          std::string(60000, '['), std::string(100000, ' ')}) {
        RawClient client(socket, "app");
        client.sendText(text);
        EXPECT_EQ(client.receive()["t"], "error") << text.substr(0, 20);
        EXPECT_TRUE(client.receive().is_null());
    }
}

TEST_F(ScreenTest, AMessageNestedTooDeeplyIsRefused) {
    const std::string deep = std::string(30000, '[') + std::string(30000, ']');
    for (const std::string& text :
         {"{\"t\":\"sync\",\"id\":" + deep + "}", "{\"t\":\"commit\",\"damage\":[[" + deep + ",0,9,9]]}"}) {
        RawClient client(socket, "app");
        client.sendText(text);
        EXPECT_EQ(client.receive()["t"], "error");
    }
}

TEST_F(ScreenTest, AWindowNeedsSaneSizesAndItsMemory) {
    struct Row {
        const char* member;
        Json value;
    };
    const Row rows[] = {
        {"width", 0},        {"width", -1},          {"width", 101},    {"width", 1 << 30}, {"width", "100"},
        {"height", 0},       {"height", 101},        {"height", 1e300}, {"stride", 0},      {"stride", 399},
        {"stride", 401},     {"stride", 404},        {"stride", -400},  {"window", 0},      {"window", -1},
        {"window", nullptr}, {"window", 0x40000000},
    };
    for (const auto& row : rows) {
        Memory memory(100, 100);
        RawClient app(socket, "app");
        Json message = memory.window(1, 1, false);
        message[row.member] = row.value;
        EXPECT_NE(app.refusal(message, {memory.fd()}), "") << message;
    }
    Memory memory(100, 100);
    EXPECT_NE(RawClient(socket, "app").refusal(memory.window(1, 1, false)), "") << "no descriptor";
    EXPECT_NE(RawClient(socket, "app").refusal(memory.window(1, 1, false), {memory.fd(), memory.fd()}), "");
    EXPECT_NE(RawClient(socket, "app").refusal(memory.window(1, 1, false), {0}), "") << "no memfd";
}

TEST_F(ScreenTest, MemoryThatCouldBeCutIsRefused) {
    for (int seals : {0, F_SEAL_SHRINK, F_SEAL_SHRINK | F_SEAL_GROW, F_SEAL_GROW | F_SEAL_SEAL}) {
        Memory memory(100, 100, seals);
        EXPECT_NE(RawClient(socket, "app").refusal(memory.window(1, 1, false), {memory.fd()}).find("sealed"),
                  std::string::npos);
    }
}

TEST_F(ScreenTest, MemoryThatIsTooShortIsRefused) {
    Memory memory(100, 100, Memory::AllSeals, 1);
    EXPECT_NE(RawClient(socket, "app")
                  .refusal(memory.window(1, 1, false), {memory.fd()})
                  .find("119999 bytes, 120000"),
              std::string::npos);
}

TEST_F(ScreenTest, OneNumberStandsForOneWindow) {
    Memory memory(100, 100);
    RawClient app(socket, "app");
    app.open(memory);
    EXPECT_NE(app.refusal(memory.window(1, 1, false), {memory.fd()}), "");
}

TEST_F(ScreenTest, AClientHasAtMostSixteenWindows) {
    Memory memory(10, 10);
    RawClient app(socket, "app");
    for (int number = 1; number <= 16; ++number) {
        app.open(memory, number);
    }
    EXPECT_TRUE(app.sync().empty());
    EXPECT_NE(app.refusal(memory.window(17, 1, false), {memory.fd()}), "");
}

TEST_F(ScreenTest, AFrameNeedsItsWindowAndBuffer) {
    for (const Json& message : {commitOf(2, 0, 1), commitOf(1, 3, 1), commitOf(1, -1, 1), commitOf(0, 0, 1),
                                Json{{"t", "commit"}, {"window", 1}}, Json{{"t", "commit"}}}) {
        Memory memory(100, 100);
        RawClient app(socket, "app");
        app.open(memory);
        EXPECT_NE(app.refusal(message), "") << message;
    }
}

TEST_F(ScreenTest, DamageOutsideTheWindowIsCutAndStrangeDamageMeansAll) {
    RedApplication app(socket, 100, 100);
    EXPECT_EQ(pixel(50, 50), Red);
    app.memory.fill(1, Green);
    app.show(1, 2, Json::array({{-2147483648, -5, 2147483647, 1}, {90, 90, 2147483647, 2147483647}}));
    EXPECT_EQ(pixel(50, 50), Red);
    EXPECT_EQ(pixel(99, 99), Green);
    for (const Json& strange : {Json("all"), Json::array({1}), Json::array({{1, 2, 3}}),
                                Json(std::vector<std::vector<int>>(300, {0, 0, 1, 1}))}) {
        app.memory.fill(0, Red);
        app.show(0, 3);
        ASSERT_EQ(pixel(50, 50), Red);
        app.show(1, 4, strange);
        EXPECT_EQ(pixel(50, 50), Green) << strange;
    }
}

TEST_F(ScreenTest, OneClientCannotTouchTheWindowsOfAnother) {
    RedApplication app(socket, 100, 100);
    RawClient other(socket, "app");
    other.send({{"t", "close"}, {"window", 1}});
    other.send({{"t", "props"}, {"window", 1}, {"visible", false}});
    EXPECT_TRUE(other.sync().empty());
    EXPECT_EQ(pixel(1, 1), Red);
    EXPECT_NE(other.refusal(commitOf(1, 0, 1)), "");
}

TEST_F(ScreenTest, AClientThatReadsNoReleasesIsCutOffAndTheOthersGoOn) {
    Memory memory(100, 100);
    memory.fill(0, Red);
    RawClient stuck(socket, "app");
    stuck.open(memory);
    RawClient app(socket, "app");
    for (int i = 0; i < 20000; ++i) {
        stuck.send(commitOf(1, i % 2, i));
    }
    EXPECT_TRUE(app.sync().empty());
    EXPECT_TRUE(eventually([&] { return pixel(1, 1) == Black; })) << "its window has gone with it";
}

TEST_F(ScreenTest, PicturesThatAreNotPremultipliedGiveWrongColoursAndNothingWorse) {
    Memory memory(801, 3);
    for (int buffer = 0; buffer < 3; ++buffer) {
        memory.fill(buffer, 0x01ffffff);
    }
    RawClient app(socket, "app");
    app.send(memory.window(1, 1, true), {memory.fd()});
    app.show(0, 1);
    EXPECT_EQ(pixel(0, 0), 0xffffffff);
    EXPECT_EQ(pixel(0, 3), Black);
}

TEST_F(ScreenTest, ARefusedClientLosesItsWindowsAtOnceAndIsHeardNoMore) {
    RedApplication app(socket, 100, 100);
    EXPECT_EQ(pixel(1, 1), Red);
    app.send(commitOf(9, 0, 1));
    app.open(app.memory, 2);
    app.send(commitOf(2, 0, 1));
    EXPECT_EQ(app.receive()["t"], "error");
    EXPECT_EQ(pixel(1, 1), Black);
    EXPECT_TRUE(app.receive().is_null());
    EXPECT_EQ(pixel(1, 1), Black);
}

} // namespace zm::test
