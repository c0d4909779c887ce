#include "tests/disc/Holdings.h"
#include "tests/disc/PictureFixture.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace zm::test;
using namespace zm::disc::model;
using namespace std::chrono_literals;

namespace {

// The drive alone takes a second to change a disc: the hundreds that a week brings are run on demand.
const bool Soak = std::getenv("ZM_SOAK") != nullptr;
// What libraries keep for good (types, caches, arenas) is there after these.
const int WarmUpRounds = Soak ? 50 : 12;
const int Rounds = Soak ? 200 : 24;
// Far less than one kilobyte a disc.
constexpr long AllowedBytes = 128 * 1024;

class Endurance : public Pictures {
protected:
    // Inserts the disc, waits until it plays, and has it ejected.
    void round(const std::string& disc) {
        m_unit.forget();
        m_unit.request({{"op", "insert"}, {"path", disc}});
        m_unit.nextState(PlayState::Loading);
        m_unit.nextState(PlayState::Playing);
        m_unit.command(13);
        m_unit.nextState(PlayState::Ejecting);
    }

    // The least that the process holds within a moment: threads that are about to end do not count.
    Holdings settled() {
        m_unit.next("disc", "0");
        m_unit.forget();
        Holdings least = Holdings::now();
        for (const auto end = std::chrono::steady_clock::now() + 2s; std::chrono::steady_clock::now() < end;
             std::this_thread::sleep_for(50ms)) {
            const Holdings now = Holdings::now();
            least = {std::min(least.bytes, now.bytes), std::min(least.descriptors, now.descriptors),
                     std::min(least.threads, now.threads)};
        }
        return least;
    }
};

} // namespace

TEST_F(Endurance, ManyDiscsLeaveNothingBehind) {
    const std::array discs{m_disc / "music", m_disc / "video", m_disc / "photos"};
    place(toneFile("mp3", 5, "Song"), discs[0] + "/1.mp3");
    place(sample({"short.mpg", "-f lavfi -i color=red:size=320x240:rate=25:duration=5 -f lavfi -i "
                               "sine=frequency=440:duration=5 -c:v mpeg2video -b:v 800k -c:a mp2 -f vob"}),
          discs[1] + "/1.mpg");
    place(sample({"plain.jpg", "-f lavfi -i color=blue:size=400x240 -frames:v 1"}), discs[2] + "/1.jpg");
    m_unit.startService();
    m_unit.command(187, 1, 0);
    Holdings before;
    for (int i = 0; i < WarmUpRounds + Rounds && !HasFailure(); ++i) {
        if (i == WarmUpRounds) {
            before = settled();
        }
        round(discs[static_cast<size_t>(i) % discs.size()]);
    }
    const Holdings after = settled();
    EXPECT_LE(after.bytes, before.bytes + AllowedBytes);
    EXPECT_LE(after.descriptors, before.descriptors);
    EXPECT_LE(after.threads, before.threads);
    std::printf("bytes %ld -> %ld, descriptors %ld -> %ld, threads %ld -> %ld\n", before.bytes, after.bytes,
                before.descriptors, after.descriptors, before.threads, after.threads);
}
