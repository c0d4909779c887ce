// Images whose sectors have their sub-channels behind them.
#include "tests/disc/DiscImageFixture.h"

using namespace zm::test;

TEST_F(DiscImages, SubChannelsBehindTheSoundAreLeftOut) {
    write("d.bin", withSubChannels(m_one + m_two));
    std::string graphics = twoTracks;
    for (size_t at; (at = graphics.find("AUDIO")) != std::string::npos;) {
        graphics.replace(at, 5, "CDG");
    }
    write("1.cue", "FILE d.bin BINARY\n" + graphics);
    write("2.cue", std::string("FILE d.bin BINARY\n") + twoTracks); // they are told by the file's size alone
    write("t.bin", swapped(withSubChannels(m_one + m_two)));
    write("3.toc", "CD_DA\nTRACK AUDIO RW_RAW\nFILE \"t.bin\" 0 00:01:00\n"
                   "TRACK AUDIO RW\nFILE \"t.bin\" 44100\n");
    for (const char* name : {"1.cue", "2.cue", "3.toc"}) {
        const auto medium = open(name);
        ASSERT_TRUE(medium) << name;
        EXPECT_EQ(contentsOf(*medium).of(MediaKind::Music)[0].tags.seconds, 1) << name;
        EXPECT_EQ(soundOf(*medium, "01.wav"), m_one) << name;
        EXPECT_EQ(soundOf(*medium, "02.wav"), m_two) << name;
    }
}

TEST_F(DiscImages, SilenceAndAHiddenTrackHaveTheirLengthWithSubChannelsToo) {
    write("d.bin", withSubChannels(cdSound(5, 880) + m_one + m_two));
    write("d.cue", "FILE d.bin BINARY\nTRACK 01 AUDIO\nINDEX 00 00:00:00\nINDEX 01 00:05:00\n"
                   "POSTGAP 00:00:10\nTRACK 02 AUDIO\nINDEX 01 00:06:00\n");
    const auto medium = open("d.cue");
    EXPECT_EQ(soundOf(*medium, "01.wav"), m_one + std::string(size_t{10} * SectorBytes, '\0'));
    EXPECT_EQ(soundOf(*medium, "03.wav"), cdSound(5, 880));
}

TEST_F(DiscImages, TheImageOfThreeFilesMayHaveSubChannelsItself) {
    // Of a size that fits sectors of both sizes.
    const std::string sound = cdSound(2, 440).substr(0, size_t{49} * SectorBytes);
    write("d.img", withSubChannels(sound));
    ASSERT_EQ(std::filesystem::file_size(m_folder / "d.img") % SectorBytes, 0u);
    write("d.ccd", "[Entry 0]\nSession=1\nPoint=0xa2\nPLBA=49\n[Entry 1]\nSession=1\nPoint=1\nPLBA=0\n");
    EXPECT_EQ(soundOf(*open("d.ccd"), "01.wav"), sound);
    write("d.ccd", "[Entry 0]\nSession=1\nPoint=0xa2\nPLBA=51\n[Entry 1]\nSession=1\nPoint=1\nPLBA=0\n");
    EXPECT_EQ(soundOf(*open("d.ccd"), "01.wav"), withSubChannels(sound)) << "as many short ones were said";
}

TEST_F(DiscImages, AnImageWithItsDescriptionAtItsEndMayHaveSubChannels) {
    const std::string sound = withSubChannels(m_one);
    const std::string track = std::string(12, '\0') + big(2448, 2) + "\x10" + std::string(3, '\0') +
                              big(0, 8) + big(0, 8) + big(sound.size(), 8);
    const std::string tracks = std::string(22, '\0') + track;
    write("d.nrg", sound + "DAOX" + big(tracks.size(), 4) + tracks + "END!" + big(0, 4) + "NER5" +
                       big(sound.size(), 8));
    EXPECT_EQ(soundOf(*open("d.nrg"), "01.wav"), m_one);
}
