#include "services/bench/unit/VoiceRequest.h"

#include <gtest/gtest.h>

namespace zm::test {

TEST(VoiceRequest, IsApplicationDataWithASongOrASinger) {
    for (const char* text : {"--song=Fog", "--song=\"it's 100%\"", "--singer Ann", "--song= --singer=Ann",
                             "--song=", "--kb_val=7 --song=Fog"}) {
        EXPECT_TRUE(bench::unit::isVoiceRequest(text)) << text;
    }
    for (const char* text : {"", "song", "--kb_val=7 --kb_ret=1", "--kb_val=7 --kb_ret=1 --song=Fog",
                             "--songs=Fog", "--text=\"--song=Fog\""}) {
        EXPECT_FALSE(bench::unit::isVoiceRequest(text)) << text;
    }
}

} // namespace zm::test
