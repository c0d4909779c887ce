// What pages show of published objects, followed beside the views.
#include "platform/linux/framework/BoundObjects.h"

#include "platform/linux/pps/PpsFile.h"
#include "tests/support/Eventually.h"
#include "tests/support/RunningPpsService.h"
#include "tests/support/TemporaryFolder.h"

#include <cairo.h>
#include <gmock/gmock.h>

#include <mutex>
#include <vector>

namespace zm::test {

namespace {

const Binding path{"zelmar/disc/cover", "cover", "path"};
const Binding color{"zelmar/disc/cover", "cover", "color"};
const Binding whole{"zelmar/disc/cover", "state", ""};

class BoundObjectsTest : public testing::Test {
protected:
    void start() {
        const Status started = m_objects.start(
            socket, {{path, BoundAs::Picture}, {color, BoundAs::Color}, {whole, BoundAs::Word}},
            [this](const Binding& binding, const std::string& text, PictureFilePtr picture) {
                std::lock_guard lock(m_mutex);
                m_values.push_back(binding.member + "=" + text + (picture ? " shown" : ""));
            });
        ASSERT_TRUE(started) << started.error();
    }
    std::vector<std::string> values() {
        std::lock_guard lock(m_mutex);
        return m_values;
    }
    bool lastAre(const std::vector<std::string>& wanted) {
        const auto all = values();
        return all.size() >= wanted.size() &&
               std::equal(wanted.begin(), wanted.end(), all.end() - static_cast<ptrdiff_t>(wanted.size()));
    }
    void write(const std::string& lines) {
        auto file = PpsFile::open(socket, "/pps/zelmar/disc/cover", 258, 0666);
        ASSERT_TRUE(file) << file.error();
        ASSERT_TRUE(file->write(lines));
    }
    std::string picture() {
        const std::string name = folder.path() + "/a.png";
        cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, 8, 8);
        EXPECT_EQ(cairo_surface_write_to_png(surface, name.c_str()), CAIRO_STATUS_SUCCESS);
        cairo_surface_destroy(surface);
        return name;
    }

    TemporaryFolder folder;
    std::string socket = folder.path() + "/pps.sock";
    RunningPpsService service{socket};
    std::mutex m_mutex;
    std::vector<std::string> m_values;
    BoundObjects m_objects;
};

} // namespace

TEST_F(BoundObjectsTest, AreFollowedFromTheirPresentValueOnWithThePicturesThatTheyName) {
    const std::string file = picture();
    write("cover:json:{\"path\":\"" + file + "\",\"color\":\"#102030\"}\n");
    start();
    EXPECT_TRUE(eventually([&] { return lastAre({"color=#102030", "path=" + file + " shown"}); }));
    write("other::1\ncover:json:{\"path\":\"/nowhere.png\",\"color\":7}\n");
    EXPECT_TRUE(eventually([&] { return lastAre({"color=", "path=/nowhere.png"}); }));
    write("-cover\n");
    EXPECT_TRUE(eventually([&] { return lastAre({"color=", "path="}); }));
    write("cover::no json\n");
    EXPECT_TRUE(eventually([&] { return values().size() == 8; }));
    EXPECT_TRUE(lastAre({"color=", "path="}));
}

TEST_F(BoundObjectsTest, MayBeAWholeAttribute) {
    write("state::2\n");
    start();
    EXPECT_TRUE(eventually([&] { return lastAre({"=2"}); }));
    write("state::6\n");
    EXPECT_TRUE(eventually([&] { return lastAre({"=6"}); }));
    write("-state\n");
    EXPECT_TRUE(eventually([&] { return lastAre({"="}); }));
}

TEST_F(BoundObjectsTest, MayBeAWholeNumberWhereAWordIsWanted) {
    write("modes:json:{\"repeat\":8,\"speed\":1.5}\n");
    const Binding repeat{"zelmar/disc/cover", "modes", "repeat"};
    const Binding speed{"zelmar/disc/cover", "modes", "speed"};
    const Status started =
        m_objects.start(socket, {{repeat, BoundAs::Word}, {speed, BoundAs::Word}},
                        [this](const Binding& binding, const std::string& text, const PictureFilePtr&) {
                            std::lock_guard lock(m_mutex);
                            m_values.push_back(binding.member + "=" + text);
                        });
    ASSERT_TRUE(started) << started.error();
    EXPECT_TRUE(eventually([&] { return lastAre({"repeat=8", "speed="}); }));
    write("modes:json:{\"repeat\":-1}\n");
    EXPECT_TRUE(eventually([&] { return lastAre({"repeat=-1", "speed="}); }));
}

TEST_F(BoundObjectsTest, AreNotMadeButWaitedFor) {
    start();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_TRUE(ppsList(socket)->empty());
    write("cover:json:{\"color\":\"#102030\"}\n");
    EXPECT_TRUE(eventually([&] { return lastAre({"color=#102030", "path="}); }));
}

TEST_F(BoundObjectsTest, AreFollowedFurtherWhenTheirServiceIsStartedAnew) {
    write("cover:json:{\"color\":\"#102030\"}\n");
    start();
    ASSERT_TRUE(eventually([&] { return lastAre({"color=#102030", "path="}); }));
    service.stop();
    service.start();
    write("cover:json:{\"color\":\"#405060\"}\n");
    EXPECT_TRUE(eventually([&] { return lastAre({"color=#405060", "path="}); }));
}

TEST_F(BoundObjectsTest, AreStoppedAtOnceAlsoWhileTheyAreWaitedFor) {
    start();
    const auto begun = std::chrono::steady_clock::now();
    m_objects.stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(2));
    start();
    m_objects.stop();
    m_objects.stop();
}

} // namespace zm::test
