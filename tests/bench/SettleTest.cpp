#include "services/bench/commands/Processor.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>

namespace zm::test {

namespace {

bench::unit::HeadUnitOptions bareUnit(const std::string& folder) {
    bench::unit::HeadUnitOptions options;
    options.runtimeDir = folder;
    return options;
}

/** A head unit without programs, whose turns are the test's. */
class SettlingUnit : public testing::Test {
protected:
    void SetUp() override {
        const auto started = m_unit.start();
        ASSERT_TRUE(started) << started.error();
    }
    /** Begins a command; what it prints comes to `out`, its end to `ended`. */
    void begin(
        const std::vector<std::string>& words, std::string& out, const std::function<void()>& ended = [] {}) {
        m_processor.execute(std::make_shared<bench::commands::Run>(
            words, "/",
            bench::commands::Run::Sink{[&out](const std::string& text) { out += text; },
                                       [](const std::string& text) { ADD_FAILURE() << text; },
                                       [ended](int) { ended(); }}));
    }

    RuntimeFolder m_folder;
    EventLoop m_loop;
    bench::unit::HeadUnit m_unit{m_loop, bareUnit(m_folder.path())};
    bench::commands::Processor m_processor{m_unit};
};

} // namespace

TEST_F(SettlingUnit, HasHandedOnWhatIsWatched) {
    std::string watched;
    std::string rest;
    std::optional<std::string> seenByThen;
    begin({"pps", "watch", "a/b", "-n", "1"}, watched);
    m_loop.post([&] {
        // In the turn in which it finds that all is quiet, the notice of the change has not come yet.
        m_loop.post([&] { begin({"pps", "put", "a/b", "x::1"}, rest); });
        begin({"settle"}, rest, [&] { seenByThen = watched; });
    });
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(15);
    while (!seenByThen && std::chrono::steady_clock::now() < end) {
        m_loop.iterate(false);
    }
    EXPECT_EQ(seenByThen, "x::1\n");
    while (m_loop.iterate(false)) {
    }
}

} // namespace zm::test
