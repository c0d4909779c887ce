#include "services/disc/dvd/NavPack.h"
#include "services/disc/dvd/Pack.h"
#include "services/disc/dvd/Timeline.h"

#include <gtest/gtest.h>

#include <initializer_list>

using zm::dvd::SoundKind;

namespace zm::disc::dvd {

namespace {

using Bytes = std::vector<uint8_t>;

/** A pack of 2048 bytes with the packets that were added. */
class PackBytes {
public:
    PackBytes() { m_bytes = {0, 0, 1, 0xba, 0x44, 0, 4, 0, 4, 1, 0, 0, 3, 0xf8}; }
    /** A packet whose header has the times given (90 kHz), -1 for none. */
    PackBytes& add(uint8_t stream, const Bytes& data, int64_t time = -1, uint8_t flags = 0x80) {
        Bytes header{flags, static_cast<uint8_t>(time >= 0 ? 0x80 : 0),
                     static_cast<uint8_t>(time >= 0 ? 5 : 0)};
        if (time >= 0) {
            for (const int64_t byte : {0x21 | (time >> 29 & 0x0e), time >> 22 & 0xff, 1 | (time >> 14 & 0xfe),
                                       time >> 7 & 0xff, 1 | (time << 1 & 0xfe)}) {
                header.push_back(static_cast<uint8_t>(byte));
            }
        }
        const size_t size = header.size() + data.size();
        for (const uint8_t byte : {uint8_t{0}, uint8_t{0}, uint8_t{1}, stream,
                                   static_cast<uint8_t>(size >> 8), static_cast<uint8_t>(size & 0xff)}) {
            m_bytes.push_back(byte);
        }
        m_bytes.insert(m_bytes.end(), header.begin(), header.end());
        m_bytes.insert(m_bytes.end(), data.begin(), data.end());
        return *this;
    }
    Bytes bytes() const {
        Bytes whole = m_bytes;
        whole.resize(2048);
        return whole;
    }

private:
    Bytes m_bytes;
};

Bytes from(std::span<const uint8_t> data) {
    return {data.begin(), data.end()};
}

/** A navigation pack with one kind of colours and buttons side by side, in as many groups as wanted. */
Bytes navPack(int count, int groups = 1, int shapes = 0) {
    constexpr size_t Control = 45;
    constexpr size_t Highlight = Control + 96;
    Bytes bytes(2048);
    const auto put = [&](size_t at, std::initializer_list<int> values) {
        for (const int value : values) {
            bytes[at++] = static_cast<uint8_t>(value);
        }
    };
    put(38, {0, 0, 1, 0xbf, 3, 0xd4, 0});
    put(Control + 12, {0, 1, 0x5f, 0x90}); // 90,000
    put(Control + 16, {0, 2, 0xbf, 0x20}); // 180,000
    put(Control + 24, {0, 1, 2, 0x40 | 0x13});
    put(Highlight, {0, 1});
    put(Highlight + 14, {groups << 4 | (shapes >> 8 & 7), (shapes >> 4 & 7) << 4 | (shapes & 7), 0, count});
    put(Highlight + 22, {0x12, 0x34, 0x56, 0x78, 0x9a, 0xbc, 0xde, 0xf0});
    for (int group = 0; group < groups; ++group) {
        for (int i = 0; i < count; ++i) {
            const size_t at = Highlight + 46 + static_cast<size_t>(group * (36 / groups) + i) * 18;
            const int left = 100 * i;
            const int right = left + 50;
            const int top = 200 + 100 * group;
            const int bottom = top + 40;
            put(at, {0x40 | left >> 4, (left & 15) << 4 | right >> 8, right & 0xff, top >> 4,
                     (top & 15) << 4 | bottom >> 8, bottom & 0xff});
        }
    }
    return bytes;
}

} // namespace

TEST(DvdPack, GivesEachStreamsDataWithItsTime) {
    const auto pack = PackBytes()
                          .add(0xe0, {1, 2, 3}, 0x123456789 & 0x1ffffffff)
                          .add(0xbd, {0x81, 1, 0, 1, 7, 8})
                          .add(0xbd, {0x8a, 1, 0, 1, 9})
                          .add(0xbd, {0xa3, 1, 0, 4, 5, 6})
                          .add(0xc2, {4, 4})
                          .add(0xbd, {0x3f, 6})
                          .bytes();
    const auto all = splitPack(pack);
    ASSERT_EQ(all.size(), 6u);
    EXPECT_EQ(all[0].kind, Fragment::Kind::Video);
    EXPECT_EQ(from(all[0].data), (Bytes{1, 2, 3}));
    EXPECT_EQ(all[0].time, 0x123456789);
    struct Row {
        SoundKind sound;
        int stream;
        Bytes data;
    };
    const Row sounds[] = {{SoundKind::Ac3, 1, {7, 8}},
                          {SoundKind::Dts, 2, {9}},
                          {SoundKind::Lpcm, 3, {0, 4, 5, 6}},
                          {SoundKind::Mpeg, 2, {4, 4}}};
    for (size_t i = 0; i < std::size(sounds); ++i) {
        EXPECT_EQ(all[i + 1].kind, Fragment::Kind::Sound);
        EXPECT_EQ(all[i + 1].sound, sounds[i].sound);
        EXPECT_EQ(all[i + 1].stream, sounds[i].stream);
        EXPECT_EQ(from(all[i + 1].data), sounds[i].data);
        EXPECT_FALSE(all[i + 1].time);
    }
    EXPECT_EQ(all[5].kind, Fragment::Kind::Subtitle);
    EXPECT_EQ(all[5].stream, 31);
    EXPECT_EQ(from(all[5].data), Bytes{6});
}

TEST(DvdPack, TheTimeOfSoundBelongsToTheUnitThatBeginsInIt) {
    const auto pack = PackBytes().add(0xbd, {0x80, 1, 0, 3, 10, 11, 12, 13}, 90000).bytes();
    const auto all = splitPack(pack);
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0].firstUnit, 2u);
    // A pointer behind the end is none.
    const auto damaged = PackBytes().add(0xbd, {0x80, 1, 0, 99, 10, 11}, 90000).bytes();
    EXPECT_EQ(splitPack(damaged).at(0).firstUnit, 0u);
}

TEST(DvdPack, EncryptedContentIsTold) {
    const auto pack = PackBytes().add(0xe0, {1}, -1, 0x90).bytes();
    EXPECT_TRUE(splitPack(pack).at(0).scrambled);
    const auto clear = PackBytes().add(0xe0, {1}).bytes();
    EXPECT_FALSE(splitPack(clear).at(0).scrambled);
}

TEST(DvdPack, WhatIsNoneOrCutGivesNothingOfIt) {
    EXPECT_TRUE(splitPack(Bytes(2048)).empty());
    EXPECT_TRUE(splitPack(Bytes{0, 0, 1, 0xba}).empty());
    const auto padding = PackBytes().add(0xbe, {1, 2, 3}).bytes();
    EXPECT_TRUE(splitPack(padding).empty());
    auto longer = PackBytes().add(0xe0, {1, 2, 3}).bytes();
    longer[18] = 0xff; // says that it is longer than the pack
    longer[19] = 0xff;
    EXPECT_EQ(splitPack(longer).at(0).data.size(), 2048u - 23);
}

TEST(NavPack, TellsTimesAndButtons) {
    const auto pack = readNavPack(navPack(3), false);
    ASSERT_TRUE(pack);
    EXPECT_EQ(pack->begin, 90000);
    EXPECT_EQ(pack->end, 180000);
    EXPECT_EQ(pack->elapsed, 62 * 90000 + 13 * 3600);
    EXPECT_EQ(pack->change, ButtonChange::New);
    ASSERT_EQ(pack->buttons.size(), 3u);
    EXPECT_EQ(pack->buttons[1].left, 100);
    EXPECT_EQ(pack->buttons[1].right, 150);
    EXPECT_EQ(pack->buttons[1].top, 200);
    EXPECT_EQ(pack->buttons[1].bottom, 240);
    EXPECT_EQ(pack->buttons[1].chosen, 0x12345678u);
    EXPECT_EQ(pack->buttons[1].pressed, 0x9abcdef0u);
    EXPECT_EQ(pack->buttonAt(120, 220), 2);
    EXPECT_EQ(pack->buttonAt(170, 220), 0);
}

TEST(NavPack, ButtonsOfTheShownShapeAreTaken) {
    const auto bytes = navPack(1, 2, 0x210); // letterbox first, then wide
    EXPECT_EQ(readNavPack(bytes, true)->buttons.at(0).top, 300);
    EXPECT_EQ(readNavPack(bytes, false)->buttons.at(0).top, 200);
}

TEST(NavPack, ButtonsOfAGroupThatIsNotThereAreNotTaken) {
    const auto bytes = navPack(1, 2, 0x201); // what would be the third is wide
    EXPECT_EQ(readNavPack(bytes, true)->buttons.at(0).top, 200);
}

TEST(NavPack, WhatIsNoneIsNotRead) {
    EXPECT_FALSE(readNavPack(Bytes(2048), false));
    auto cut = navPack(1);
    cut.resize(2000);
    EXPECT_FALSE(readNavPack(cut, false));
    auto many = navPack(63); // more than there is room for
    EXPECT_EQ(readNavPack(many, false)->buttons.size(), 36u);
}

TEST(DvdTimeline, UnitsFollowEachOtherWhateverTheDiscCounts) {
    Timeline line;
    EXPECT_EQ(line.place(5000, 50000, 0).begin, 0);
    EXPECT_EQ(line.shift(), -5000);
    EXPECT_EQ(line.place(50000, 95000, 0).begin, 45000);
    // The disc begins to count anew.
    EXPECT_EQ(line.place(1000, 46000, 0).begin, 90000);
    EXPECT_EQ(line.shift(), 89000);
    // Behind a still picture nothing is played before now.
    EXPECT_EQ(line.place(46000, 91000, 400000).begin, 400000);
    line.restart();
    EXPECT_EQ(line.place(46000, 91000, 0).begin, 0);
}

TEST(DvdTimeline, ADamagedEndIsNotBelieved) {
    Timeline line;
    EXPECT_EQ(line.place(90000, 1000, 0).end, 45000);
    EXPECT_EQ(line.place(0, 0x7fffffff, 0).end, 90000);
}

} // namespace zm::disc::dvd
