#include "services/disc/dvd/Sound.h"
#include "tests/disc/DvdFixture.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>

using namespace zm::disc::model;
using namespace zm::test;
namespace fs = std::filesystem;

namespace {

/** Many sound devices can be open in one program only; a file in the place of the device tells which programs have it. */
class SoundDevice : public Dvd {
protected:
    SoundDevice() {
        ::setenv("ZM_SOUND", device().c_str(), 1);
        place(toneFile("flac", 20), m_folder / "music/song.flac");
    }
    ~SoundDevice() override { ::unsetenv("ZM_SOUND"); }

    std::string device() const { return m_folder / "sound"; }
    /** How many programs that decode files have it open. */
    int holders() const {
        int count = 0;
        for (const auto& process : fs::directory_iterator("/proc")) {
            std::string name;
            std::ifstream(process.path() / "comm") >> name;
            std::error_code error;
            for (fs::directory_iterator file(process.path() / "fd", error), end;
                 name == "zmdecode" && file != end; file.increment(error)) {
                if (fs::read_symlink(file->path(), error) == device()) {
                    ++count;
                    break;
                }
            }
        }
        return count;
    }
    void insert(const std::string& path) { m_unit.request({{"op", "insert"}, {"path", path}}); }

    TempFolder m_folder;
};

} // namespace

TEST_F(SoundDevice, HearsWhatADvdPlays) {
    gst_init(nullptr, nullptr);
    constexpr uintmax_t HalfASecond = 48000 * 4 / 2;
    GstElement* pipeline = gst_parse_launch(
        "audiotestsrc num-buffers=60 samplesperbuffer=480 ! audio/x-raw,format=S16LE,rate=48000,channels=2 ! "
        "identity name=tone",
        nullptr);
    ASSERT_NE(pipeline, nullptr);
    GstElement* sound = zm::disc::dvd::makeSound();
    gst_bin_add(GST_BIN(pipeline), sound);
    GstElement* tone = gst_bin_get_by_name(GST_BIN(pipeline), "tone");
    ASSERT_TRUE(gst_element_link(tone, sound));
    gst_object_unref(tone);
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    EXPECT_TRUE(eventually([&] {
        std::error_code error;
        return fs::file_size(device(), error) >= HalfASecond && !error;
    }));
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
}

TEST_F(SoundDevice, IsLeftToADvdAndTakenAgainBehindIt) {
    m_unit.startService();
    m_unit.command(187, 1, 0);
    EXPECT_TRUE(eventually([this] { return holders() == 1; })) << "it is open before anything is played";
    insert(dvdImage(DvdKind::Menus));
    m_unit.nextState(PlayState::Playing);
    EXPECT_EQ(holders(), 0);
    nextMenu();
    insert(m_folder / "music");
    m_unit.nextState(PlayState::Ejecting);
    m_unit.nextState(PlayState::Playing);
    EXPECT_EQ(holders(), 1);
    m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 2; });
    EXPECT_EQ(holders(), 1);
}
