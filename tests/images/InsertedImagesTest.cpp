// Images of all forms in the drive of the real service: whole ones play; damaged ones are refused in words or played as far
// as they go, and neither they nor anything behind them holds the service up. One damaged image of each form in every run,
// more with ZM_INSERTED_IMAGES=COUNT in the environment.
#include "tests/disc/DiscUnit.h"
#include "tests/images/ImageDamage.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

namespace {

// A machine with much to do takes its time for what is a second elsewhere.
constexpr auto MostForAnswer = 2s;
constexpr auto MostForDisc = 20s;

class InsertedImages : public testing::TestWithParam<ImageForm> {
protected:
    void SetUp() override {
#ifdef __SANITIZE_THREAD__
        GTEST_SKIP() << "the decoder's libraries are not instrumented";
#endif
        m_unit.startService();
        m_unit.command(187, 1);
    }

    void insert(const std::string& path) {
        m_unit.mark();
        m_unit.request({{"op", "insert"}, {"path", path}});
    }
    void playWhole() {
        insert(m_whole.opened);
        m_unit.next("drivestate", [this](const Published& each) {
            return each.json()["state"] == "loaded" && each.json()["path"] == m_whole.opened;
        });
        m_unit.nextState(PlayState::Playing, MostForDisc);
    }
    void ejectDisc() {
        m_unit.mark();
        m_unit.command(13);
        m_unit.nextState(PlayState::Ejecting, MostForAnswer);
        m_unit.next("disc", "0");
    }
    /** What the drive says of the disc at `path` once it has been read; null for one that it has not taken. */
    nlohmann::json read(const std::string& path) {
        insert(path);
        const auto begun = m_unit.next(
            "drivestate",
            [](const Published& each) {
                return each.json()["state"] == "reading" || each.json()["state"] == "error";
            },
            MostForDisc);
        if (begun.json()["state"] == "error") {
            EXPECT_NE(begun.json()["text"], "");
            EXPECT_TRUE(m_unit.since("disc").empty()) << "nothing is inside";
            return {};
        }
        m_unit.next("disc", "1", MostForAnswer);
        return m_unit
            .next(
                "drivestate",
                [](const Published& each) {
                    return each.json()["state"] == "loaded" || each.json()["state"] == "error";
                },
                MostForDisc)
            .json();
    }
    /** Inserts the damaged disc, as it is, and takes it out again; whether it was read. */
    bool tryDamaged() {
        const auto report = read(m_damaged.opened);
        if (report.is_null()) {
            m_unit.mark();
            m_unit.command(13);
            m_unit.nextState(PlayState::Loading, MostForAnswer); // on to "no disc"
            return false;
        }
        const bool loaded = report["state"] == "loaded";
        if (loaded) {
            m_unit.mark();
            m_unit.command(7, 99); // no such mode
            m_unit.next("msgtip", "1", MostForAnswer);
        } else {
            EXPECT_NE(report["text"], "");
        }
        ejectDisc();
        return loaded;
    }

    TempFolder m_folder;
    SmallImage m_whole = GetParam().make(m_folder / "whole");
    SmallImage m_damaged = GetParam().make(m_folder / "damaged");
    DiscUnit m_unit;
};

} // namespace

TEST_P(InsertedImages, PlayAndComeOut) {
    playWhole();
    ejectDisc();
}

TEST_P(InsertedImages, ThatAreDamagedAnswerComeOutAndLeaveTheDriveToOthers) {
    const char* wanted = std::getenv("ZM_INSERTED_IMAGES");
    const int count = wanted ? std::atoi(wanted) : 1;
    const std::string right = readFile(m_damaged.damaged);
    int loaded = 0;
    for (int seed = 0; seed < count && !HasFailure(); ++seed) {
        std::minstd_rand random(static_cast<unsigned>(seed * 1000 + GetParam().name[0]));
        random.discard(3);
        const auto& kind = damageKinds()[random() % damageKinds().size()];
        const size_t index = random() % m_damaged.structures.size();
        SCOPED_TRACE(std::string(kind.name) + ", structure " + std::to_string(index) + ", seed " +
                     std::to_string(seed));
        const Damage damage = kind.make(right, m_damaged, m_damaged.structures[index], random);
        const WhileDamaged damaged(m_damaged.damaged, right, damage);
        m_unit.forget();
        loaded += tryDamaged();
        playWhole();
        ejectDisc();
    }
    std::printf("inserted images: %s: %d, read %d\n", GetParam().name, count, loaded);
}

INSTANTIATE_TEST_SUITE_P(All, InsertedImages, testing::ValuesIn(imageForms()),
                         [](const auto& form) { return std::string(form.param.name); });
