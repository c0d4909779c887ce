// Monitored objects whose service goes away and comes back.
#include "platform/linux/framework/PpsMonitor.h"

#include "tests/support/Eventually.h"
#include "tests/support/RunningPpsService.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <mutex>
#include <vector>

namespace zm::test {

namespace {

class PpsMonitorTest : public testing::Test {
protected:
    ~PpsMonitorTest() override { m_monitor.stop(); }

    void follow(int key, const std::string& name) {
        auto file = PpsFile::open(m_socket, "/pps/zelmar/" + name + "?delta", 258, 0666);
        ASSERT_TRUE(file) << file.error();
        auto slot = std::make_shared<PpsSlot>();
        ASSERT_TRUE(slot->put(std::move(*file)));
        ASSERT_TRUE(m_monitor.add(key, slot));
    }
    void write(const std::string& name, const std::string& line) {
        auto file = PpsFile::open(m_socket, "/pps/zelmar/" + name, 258, 0666);
        ASSERT_TRUE(file) << file.error();
        ASSERT_TRUE(file->write(line));
    }
    bool comes(const std::string& line) {
        return eventually([&] {
            std::lock_guard lock(m_mutex);
            return std::ranges::find(m_lines, line) != m_lines.end();
        });
    }

    TemporaryFolder m_folder;
    std::string m_socket = m_folder.path() + "/pps.sock";
    RunningPpsService m_service{m_socket};
    std::mutex m_mutex;
    std::vector<std::string> m_lines;
    PpsMonitor m_monitor{[this](int key, pps_attrib_t* attribute) {
        std::lock_guard lock(m_mutex);
        m_lines.push_back(std::to_string(key) + " " + attribute->attr_name + "=" + attribute->value);
    }};
};

} // namespace

TEST_F(PpsMonitorTest, AreFollowedFurtherWithoutBeingAskedForWhenTheirServiceIsStartedAnew) {
    follow(1, "disc/status");
    follow(2, "disc/device");
    ASSERT_TRUE(m_monitor.start());
    write("disc/status", "discstate::1\n");
    write("disc/device", "disc::1\n");
    ASSERT_TRUE(comes("1 discstate=1"));
    ASSERT_TRUE(comes("2 disc=1"));
    m_service.stop();
    std::this_thread::sleep_for(std::chrono::milliseconds(300)); // it is tried in vain
    m_service.start();
    write("disc/device", "disc::2\n");
    EXPECT_TRUE(comes("2 disc=2"));
    write("disc/status", "discstate::2\n");
    EXPECT_TRUE(comes("1 discstate=2"));
}

} // namespace zm::test
