// The time of each picture of a film, also where a DVD or a file gives none.
#include "services/disc/engine/PictureTimes.h"
#include "services/disc/dvd/Element.h"
#include "services/disc/dvd/Pack.h"
#include "services/disc/engine/Gst.h"
#include "tests/disc/DiscUnit.h"
#include "tests/disc/DvdDisc.h"
#include "tests/disc/Samples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <utility>
#include <vector>

namespace zm::disc::dvd {

using engine::PictureTimes;

namespace {

constexpr GstClockTime None = GST_CLOCK_TIME_NONE;
constexpr GstClockTime Duration = 40;

enum Type { I = 1, P = 2, B = 3 };

/** A picture as it is coded: its headers and the beginning of what follows. */
struct Coded {
    Type type;
    int number;
    GstClockTime given = None;
    bool beginsGroup = false;
    GstClockTime duration = Duration;
    int structure = 3; ///< 1 and 2 are fields

    std::vector<uint8_t> bytes() const {
        std::vector<uint8_t> all;
        if (beginsGroup) {
            all = {0, 0, 1, 0xb3, 0x2d, 0x02, 0x40, 0x23, 0, 0, 1, 0xb8, 0x00, 0x08, 0x00, 0x40};
        }
        for (const int byte : {0, 0, 1, 0, number >> 2, (number & 3) << 6 | type << 3, 0xff, 0xf8, // picture
                               0, 0, 1, 0xb5, 0x8f, 0xff, 0xf0 | structure, 0x80, 0x00, // extension
                               0, 0, 1, 1, 0x2b, 0x50, 0x00, 0x00,
                               // What slices contain is not looked at.
                               0, 0, 1, 0, 0xff, 0xff, 0xff, 0xff}) {
            all.push_back(static_cast<uint8_t>(byte));
        }
        return all;
    }
};

using Times = std::vector<GstClockTime>;

Times timesOf(const std::vector<Coded>& pictures) {
    PictureTimes times;
    Times all;
    for (const Coded& each : pictures) {
        all.push_back(times.of(each.bytes(), each.given, each.duration));
    }
    return all;
}

} // namespace

TEST(PictureTimes, AreThoseOfTheDiscWhereItGivesThem) {
    EXPECT_EQ(timesOf({{I, 0, 1000, true}, {P, 3, 1120}, {B, 1, 1041}, {B, 2, 1079}}),
              (Times{1000, 1120, 1041, 1079}));
}

TEST(PictureTimes, OfAGroupFollowFromItsFirstPicture) {
    EXPECT_EQ(timesOf({{I, 0, 1000, true}, {P, 3}, {B, 1}, {B, 2}, {P, 6}, {B, 4}, {B, 5}, {P, 7}}),
              (Times{1000, 1120, 1040, 1080, 1240, 1160, 1200, 1280}));
}

TEST(PictureTimes, OfOnePictureThatHasNoneLiesBetweenItsNeighbours) {
    EXPECT_EQ(timesOf({{I, 0, 1000, true}, {P, 3, 1120}, {B, 1, 1040}, {B, 2}, {P, 6, 1240}})[3], 1080u);
    EXPECT_EQ(timesOf({{I, 0, 1000, true}, {P, 3}, {B, 1, 1040}, {B, 2, 1080}, {P, 6, 1240}})[1], 1120u);
}

TEST(PictureTimes, OfANextGroupGoOnBehindTheOneBefore) {
    // The second group's picture comes in front of two that are shown before it.
    EXPECT_EQ(timesOf({{I, 0, 1000, true}, {P, 1}, {I, 2, None, true}, {B, 0}, {B, 1}, {P, 3}}),
              (Times{1000, 1040, 1160, 1080, 1120, 1200}));
}

TEST(PictureTimes, OfPicturesThatLastLongerAreLater) {
    // As films of 24 pictures a second are: every other one is shown for three fields.
    EXPECT_EQ(timesOf({{I, 0, 1000, true, 50}, {P, 2, None, false, 33}, {B, 1, None, false, 33}, {P, 3}}),
              (Times{1000, 1066, 1050, 1106}));
}

TEST(PictureTimes, CountPicturesOverTheLargestNumber) {
    EXPECT_EQ(timesOf({{I, 1022, 1000}, {P, 1}, {B, 1023}, {B, 0}}), (Times{1000, 1120, 1040, 1080}));
}

TEST(PictureTimes, OfSinglePicturesBeforeTheFirstGivenOneAreNotGuessed) {
    EXPECT_EQ(timesOf({{I, 2, None, true}, {B, 0}, {P, 3}}), (Times{None, None, None}));
    EXPECT_EQ(timesOf({{B, 0}, {I, 2, 1080, true}, {B, 1}, {P, 3}}), (Times{None, 1080, None, 1120}));
}

TEST(PictureTimes, OfFieldsAndOfWhatIsNoPictureStayAsTheyAre) {
    EXPECT_EQ(timesOf({{I, 0, 1000, true}, {P, 0, None, false, Duration, 2}, {P, 1}}),
              (Times{1000, None, None}));
    EXPECT_EQ(timesOf({{I, 0, 1000, true}, {P, 1, None, false, None}, {B, 2}}), (Times{1000, None, None}));
    PictureTimes times;
    EXPECT_EQ(times.of({}, 7, Duration), 7u);
    EXPECT_EQ(times.of(std::vector<uint8_t>{0, 0, 1, 0, 0, 8, 0}, None, Duration), None);
}

TEST(PictureTimes, KnowNothingMoreAfterARestart) {
    PictureTimes times;
    times.of(Coded{I, 0, 1000, true}.bytes(), 1000, Duration);
    times.of(Coded{P, 1}.bytes(), None, Duration);
    times.restart();
    EXPECT_EQ(times.of(Coded{B, 2}.bytes(), None, Duration), None);
    EXPECT_EQ(times.of(Coded{P, 3}.bytes(), None, Duration), None);
}

namespace {

GstClockTime clockTime(const std::optional<int64_t>& ticks) {
    return ticks ? static_cast<GstClockTime>(*ticks) * 100'000 / 9 : None;
}

/** All video of a film as the disc stores it; is back when it has been decoded. */
void push(GstPad* pad, const std::string& film) {
    gst_pad_push_event(pad, gst_event_new_stream_start("film"));
    const engine::GstOwned<GstCaps> caps(gst_caps_from_string("video/mpeg,mpegversion=2,systemstream=false"));
    gst_pad_push_event(pad, gst_event_new_caps(caps.get()));
    GstSegment segment;
    gst_segment_init(&segment, GST_FORMAT_TIME);
    gst_pad_push_event(pad, gst_event_new_segment(&segment));
    const std::string bytes = zm::test::readFile(film);
    const std::span all(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    for (size_t at = 0; at + zm::dvd::BlockBytes <= all.size(); at += zm::dvd::BlockBytes) {
        for (const Fragment& each : splitPack(all.subspan(at, zm::dvd::BlockBytes))) {
            if (each.kind == Fragment::Kind::Video) {
                GstBuffer* buffer = gst_buffer_new_memdup(each.data.data(), each.data.size());
                GST_BUFFER_PTS(buffer) = clockTime(each.time);
                GST_BUFFER_DTS(buffer) = clockTime(each.decodeTime);
                gst_pad_push(pad, buffer);
            }
        }
    }
    gst_pad_push_event(pad, gst_event_new_eos());
}

/** The times of a film's pictures as the decoder gives them out; that of the n-th that it gets is taken if `bare(n)`. */
Times decoded(const std::string& film, const std::function<bool(int)>& bare) {
    gst_init(nullptr, nullptr);
    const engine::GstOwned<GstElement> pipeline(gst_parse_launch(
        "mpegvideoparse name=pictures ! avdec_mpeg2video max-threads=1 ! fakesink name=end sync=false "
        "signal-handoffs=true",
        nullptr));
    const engine::GstOwned<GstElement> parser(gst_bin_get_by_name(GST_BIN(pipeline.get()), "pictures"));
    const engine::GstOwned<GstElement> end(gst_bin_get_by_name(GST_BIN(pipeline.get()), "end"));
    struct Taking {
        const std::function<bool(int)>& bare;
        int count = 0;
    } taking{bare};
    auto onBuffer = +[](GstPad*, GstPadProbeInfo* info, gpointer data) {
        auto* all = static_cast<Taking*>(data);
        GstBuffer* buffer = gst_buffer_make_writable(gst_pad_probe_info_get_buffer(info));
        GST_PAD_PROBE_INFO_DATA(info) = buffer;
        if (all->bare(all->count++)) {
            GST_BUFFER_PTS(buffer) = None;
        }
        return GST_PAD_PROBE_OK;
    };
    GstPad* out = gst_element_get_static_pad(parser.get(), "src");
    gst_pad_add_probe(out, GST_PAD_PROBE_TYPE_BUFFER, onBuffer, &taking, nullptr);
    gst_object_unref(out);
    PictureTimes::attach(parser.get());
    Times all;
    auto keep = +[](GstElement*, GstBuffer* buffer, GstPad*, gpointer data) {
        static_cast<Times*>(data)->push_back(GST_BUFFER_PTS(buffer));
    };
    g_signal_connect(end.get(), "handoff", G_CALLBACK(keep), &all);
    GstElement* source = makeElement();
    gst_bin_add(GST_BIN(pipeline.get()), source);
    EXPECT_TRUE(gst_element_link_pads(source, "video", parser.get(), "sink"));
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    push(padOf(source, Pad::Video), film);
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
    return all;
}

/** How far the pictures of two seconds are apart, in milliseconds, when the n-th that is decoded has no time
 * if `bare(n)`. */
Times steps(const std::function<bool(int)>& bare) {
    Times all =
        decoded(zm::test::sample({"moving.mpg", "-f lavfi -i testsrc2=size=352x288:rate=25:duration=2 "
                                                "-c:v mpeg2video -bf 2 -g 12 -b:v 1500k -f dvd"}),
                bare);
    Times result;
    for (size_t i = 1; i < all.size(); ++i) {
        result.push_back((all[i] - all[i - 1] + GST_MSECOND / 2) / GST_MSECOND);
    }
    return result;
}

} // namespace

TEST(PictureTimes, OfADecodedFilmAreEvenAlthoughSinglePicturesHaveNone) {
    for (const int lost : {7, 10, 11, 12, 13}) {
        EXPECT_EQ(steps([lost](int n) { return n == lost; }), Times(49, 40)) << "without that of " << lost;
    }
}

TEST(PictureTimes, OfADecodedFilmAreEvenWhereOnlyItsFirstPictureHasOne) {
    EXPECT_EQ(steps([](int n) { return n > 0; }), Times(49, 40));
}

} // namespace zm::disc::dvd

namespace zm::test {

using namespace std::chrono_literals;

namespace {

/** Takes the time of one picture of each unit of a film, but not in the first two: one from which no other is made, behind one
 * from which others are. */
void takeTimes(const std::string& film) {
    constexpr size_t Pack = 2048;
    constexpr size_t Packet = 14;
    constexpr int Taken = 3;
    std::string bytes = readFile(film);
    int units = 0;
    int count = 0;
    for (size_t at = 0; at + Pack <= bytes.size(); at += Pack) {
        const auto byte = [&](size_t n) -> char& { return bytes[at + Packet + n]; };
        if (byte(3) == '\xbb') {
            ++units;
            count = 0;
        } else if (byte(3) == '\xe0' && (byte(7) & 0xc0) == 0x80 && ++count == Taken && units > 2) {
            byte(7) &= 0x3f;
            std::fill_n(&byte(9), 5, '\xff');
        }
    }
    writeFile(film, bytes);
}

/** The longest time between two pictures around the beginning of the third unit of the film of `disc`. On a machine with much
 * else to do it is not the film's own each time, so a few are tried until one is shorter than `wanted`. */
std::chrono::duration<double> longestStep(const std::string& disc, std::chrono::duration<double> wanted) {
    std::chrono::duration<double> longest = 1s;
    for (int i = 0; i < 10 && longest > wanted; ++i) {
        DiscUnit unit;
        unit.startService(disc);
        unit.command(187, 1, 0);
        unit.nextState(disc::model::PlayState::Playing);
        unit.next("playtime", [](const Published& each) { return each.json()["time"] == 0; });
        std::this_thread::sleep_for(200ms);
        unit.pictures().forgetTimes();
        std::this_thread::sleep_for(1500ms);
        const auto times = unit.pictures().times();
        EXPECT_GT(times.size(), 2u);
        longest = 0s;
        for (size_t k = 1; k < times.size(); ++k) {
            longest = std::max<std::chrono::duration<double>>(longest, times[k] - times[k - 1]);
        }
    }
    return longest;
}

class FilmWithoutSomeTimes : public testing::Test {
protected:
    void SetUp() override {
#ifdef __SANITIZE_THREAD__
        GTEST_SKIP() << "the decoder's libraries are not instrumented";
#endif
        std::filesystem::copy(dvdFolder(DvdKind::Film), m_dvd.path(),
                              std::filesystem::copy_options::recursive);
        takeTimes(film());
    }
    std::string film() const {
        return m_dvd / "VIDEO_TS/VTS_01_1.VOB";
    }

    TempFolder m_dvd;
};

} // namespace

TEST_F(FilmWithoutSomeTimes, ShowsAllItsPicturesOnADvd) {
    EXPECT_LT(longestStep(m_dvd.path().string(), 50ms), 50ms); // a field each 20 ms
}

TEST_F(FilmWithoutSomeTimes, ShowsAllItsPicturesFromAFile) {
    const TempFolder disc;
    std::filesystem::copy_file(film(), disc / "film.mpg");
    EXPECT_LT(longestStep(disc.path().string(), 60ms), 60ms); // a picture each 40 ms
}

} // namespace zm::test
