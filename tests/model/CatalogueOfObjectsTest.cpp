#include "ZMModel/DiscPPSInfo.h"

#include <gtest/gtest.h>

#include <tuple>

namespace zm::test {

TEST(CatalogueOfObjects, EveryObjectHasItsKeyPathFlagsAndMode) {
    const std::tuple<const fileTagInfo&, int, const char*, int> ROWS[] = {
        {g_DiscControlPPSInfo, 0, "/pps/zelmar/disc/control?delta", 770},
        {g_DiscStatusPPSInfo, 1, "/pps/zelmar/disc/status?delta", 258},
        {g_DiscDevicePPSInfo, 2, "/pps/zelmar/disc/device?delta", 258},
        {g_DiscPlayingPPSInfo, 3, "/pps/zelmar/disc/playing?delta", 258},
        {g_DiscMpegInfoPPSInfo, 4, "/pps/zelmar/disc/mpeginfo?delta", 258},
        {g_DiscVideoCommandPPSInfo, 6, "/pps/zelmar/videoservice/command?delta,nopersist", 257},
        {g_DiscVideoStatusPPSInfo, 7, "/pps/zelmar/videoservice/status?delta", 258},
        {g_DiscSystemPPSInfo, 8, "/pps/zelmar/system/dev_status?delta", 258},
        {g_DiscNowPlayingPPSInfo, 9, "/pps/zelmar/navigator/nowplaying?delta,nopersist", 258},
    };
    for (const auto& [info, key, path, flags] : ROWS) {
        EXPECT_EQ(info.key, key) << path;
        EXPECT_EQ(info.path, path);
        EXPECT_EQ(info.flags, flags) << path;
        EXPECT_EQ(info.mode, 0666u) << path;
    }
}

/** A global of another source file already finds them filled. */
const std::string EARLY = g_DiscNowPlayingPPSInfo.path;

TEST(CatalogueOfObjects, TheyAreFilledBeforeOtherGlobals) {
    EXPECT_EQ(EARLY, "/pps/zelmar/navigator/nowplaying?delta,nopersist");
}

} // namespace zm::test
