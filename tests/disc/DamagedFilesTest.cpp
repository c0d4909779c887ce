// Whatever is wrong with a file, it plays or is reported soon; nobody waits for a start's deadline.
#include "tests/disc/DamagedFiles.h"
#include "services/disc/library/FileKinds.h"
#include "services/disc/medium/FolderMedium.h"
#include "tests/disc/DiscUnit.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <iostream>

using namespace zm::test;
using namespace zm::disc::engine;
using namespace zm::disc::library;
using namespace zm::disc::medium;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto Soon = 2s;
constexpr auto Patience = 20s;

/** Waits for the first that becomes of what was started. */
class FirstReport : public zm::disc::engine::Listener {
public:
    void engineStreams(const Streams&) override {}
    void engineStarted(Milliseconds) override { note("plays"); }
    void engineMoved(Milliseconds, Milliseconds) override {}
    void engineEnded() override { note("ended"); }
    void engineFollowed(Milliseconds) override {}
    void engineScanned(ScanEdge) override {}
    void engineFailed(const std::string& reason) override { note(reason); }

    /** What was reported; empty if nothing was. */
    std::string wait() {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, Patience, [this] { return !m_report.empty(); });
        return m_report;
    }

private:
    void note(const std::string& report) {
        std::lock_guard lock(m_mutex);
        m_report = m_report.empty() ? report : m_report;
        m_changed.notify_all();
    }
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_report;
};

class DamagedFilesTest : public testing::Test {
protected:
    DamagedFilesTest() {
        m_home.call([this] { m_engine = engineMaker(m_pictures)(m_home.loop()); });
        place(toneFile("mp3", 5), m_folder / "good.mp3");
    }
    ~DamagedFilesTest() override {
        m_home.call([this] { m_engine.reset(); });
    }

    struct Start {
        std::string report;
        Clock::duration time;
    };
    Start start(const std::string& name) {
        FirstReport report;
        const auto begun = Clock::now();
        m_home.call([&] {
            m_engine->start({m_medium, name, fileKind(name)->kind, {}}, report, {}, StartMode::Playing);
        });
        Start result{report.wait(), Clock::now() - begun};
        m_home.call([&] { m_engine->stop(); });
        return result;
    }

    TempFolder m_folder;
    std::shared_ptr<PictureRecorder> m_pictures = std::make_shared<PictureRecorder>();
    std::shared_ptr<FolderMedium> m_medium = std::make_shared<FolderMedium>(m_folder.path().string());
    LoopThread m_home;
    std::unique_ptr<Engine> m_engine;
};

} // namespace

TEST_F(DamagedFilesTest, PlayOrAreReportedSoon) {
    for (const auto& file : damagedFiles()) {
        writeFile(m_folder / file.name, file.bytes);
        ASSERT_EQ(start("good.mp3").report, "plays") << "before " << file.name;
        const Start damaged = start(file.name);
        const auto milliseconds = std::chrono::duration_cast<Milliseconds>(damaged.time).count();
        std::cout << file.name << ": " << milliseconds << " ms: " << damaged.report << "\n";
        EXPECT_NE(damaged.report, "");
        EXPECT_LT(damaged.time, Soon) << file.name << ": " << damaged.report;
    }
}
