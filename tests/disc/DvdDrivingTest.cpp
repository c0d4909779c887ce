#include "tests/disc/DvdFixture.h"
#include "tests/disc/Holdings.h"
#include "tests/disc/LibraryComplaints.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

using namespace zm::disc::model;
using namespace zm::test;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

// Far less on a machine that does nothing else; the slowest answer is told. Time in which the service could run and was given
// no processor does not count.
constexpr auto AnswerTime = 2s;
constexpr auto PictureTime = 15s;
// What the decoder's libraries keep from disc to disc.
constexpr long AllowedBytes = 16L << 20;

int setting(const char* name, int usual) {
    const char* text = std::getenv(name);
    return text ? std::atoi(text) : usual;
}

std::vector<std::string> discs() {
    std::vector<std::string> all;
    for (const auto kind : {DvdKind::Menus, DvdKind::Formats, DvdKind::Film, DvdKind::Sync, DvdKind::Shapes,
                            DvdKind::Stills, DvdKind::Angles, DvdKind::Slides}) {
        all.push_back(dvdImage(kind));
    }
    const char* more = std::getenv("ZM_DVD_DISCS");
    std::istringstream paths(more ? more : "");
    for (std::string path; std::getline(paths, path, ':');) {
        all.push_back(path);
    }
    return all;
}

/** Somebody who presses and touches whatever there is, at any moment. */
class DvdDriving : public Dvd {
protected:
    int random(int below) { return std::uniform_int_distribution<>(0, below - 1)(m_random); }

    void insert(const std::string& disc) { m_unit.request({{"op", "insert"}, {"path", disc}}); }

    void pressSomething() {
        static constexpr int keys[] = {1,  1,  2,  2,  3,  4,  5,  5,  10,  11,  11,
                                       12, 12, 18, 18, 20, 21, 21, 22, 130, 131, 145};
        static constexpr int repeats[] = {0, 1, 2, 4, 8};
        switch (random(10)) {
        case 0:
            return m_unit.command(188, random(720), random(480));
        case 1:
            return m_unit.command(183, random(6));
        case 2:
            return m_unit.command(184, random(4));
        case 3:
            return m_unit.command(185, random(30));
        case 4:
            return m_unit.command(9, repeats[random(5)]);
        case 5:
            return m_unit.command(187, random(4) > 0);
        default:
            return m_unit.command(keys[random(std::size(keys))]);
        }
    }

    // For how long the service could have run so far, and others did.
    std::chrono::nanoseconds heldOff() {
        int thread = 0;
        m_unit.whileServiceStands([&] { thread = ::gettid(); });
        std::ifstream stat("/proc/self/task/" + std::to_string(thread) + "/schedstat");
        int64_t ran = 0;
        int64_t waited = 0;
        stat >> ran >> waited;
        return std::chrono::nanoseconds(waited);
    }

    // A command that no DVD carries out is refused at once, but for the time in which discs are changed.
    void expectAnswer() {
        m_unit.forget();
        const auto before = heldOff();
        const auto asked = Clock::now();
        while (!m_unit.follows("keyinvalid", "1", 100ms) && Clock::now() - asked < PictureTime) {
            m_unit.command(7);
        }
        auto ready = asked;
        auto answered = Clock::now();
        for (const auto& each : m_unit.recorder().all()) {
            if (each.name == "disc" || each.name == "discstate") {
                ready = std::max(ready, each.when);
            }
            if (each.name == "keyinvalid" && each.value == "1") {
                answered = each.when;
                break;
            }
        }
        m_slowest = std::max(m_slowest, answered - ready);
        EXPECT_LT(answered - ready - (heldOff() - before), AnswerTime)
            << "after " << m_pressed << " commands";
    }

    void takeOut() {
        m_unit.forget();
        const auto before = heldOff();
        m_unit.command(13);
        const auto asked = Clock::now();
        const auto out = m_unit.next("disc", "0", PictureTime);
        EXPECT_LT(out.when - asked - (heldOff() - before), AnswerTime + 1s)
            << "after " << m_pressed << " commands";
        EXPECT_TRUE(eventually([] { return dvdReaderOf(::getpid()) == 0; }));
    }

    void drive(int commands) {
        const auto all = discs();
        for (int i = 0; i < commands && !HasFailure(); ++i, ++m_pressed) {
            pressSomething();
            std::this_thread::sleep_for(std::chrono::milliseconds(random(12) == 0 ? 900 : random(120)));
            if (random(30) == 0) {
                expectAnswer();
            }
            if (random(40) == 0) {
                if (random(2) == 0) {
                    m_unit.command(13);
                }
                const auto& disc = all[static_cast<size_t>(random(static_cast<int>(all.size())))];
                std::cout << m_pressed << ": " << disc << std::endl;
                insert(disc);
                m_unit.command(187, 1);
            }
        }
    }

    // Picture, sound and numbers of the disc with the menus agree, whatever was there before.
    void expectAllRight() {
        takeOut();
        insert(dvdImage(DvdKind::Menus));
        m_unit.command(187, 1);
        m_unit.nextState(PlayState::Playing);
        m_unit.command(9, 1);
        m_unit.command(184, 1);
        nextPlace(1, 1);
        m_unit.command(131);
        EXPECT_TRUE(shows(red));
        m_unit.command(183, 3);
        nextPlace(1, 3);
        EXPECT_TRUE(shows(blue));
        nextTime(13, 17);
        EXPECT_TRUE(m_unit.sound().waitForTone(440) || m_unit.sound().waitForTone(880));
        const double louder = m_unit.sound().peak();
        EXPECT_GT(louder, 0.01);
    }

    std::mt19937 m_random{static_cast<unsigned>(setting("ZM_DVD_SEED", 1))};
    int m_pressed = 0;
    Clock::duration m_slowest{};
};

} // namespace

// ZM_DVD_COMMANDS and ZM_DVD_SEED drive longer and otherwise, ZM_DVD_DISCS names further images, with colons between them.
TEST_F(DvdDriving, WhateverIsPressedNothingHangsOrIsLeftBehind) {
    const int commands = setting("ZM_DVD_COMMANDS", 150);
    const LibraryComplaints complaints;
    play(DvdKind::Menus);
    // What libraries keep for good is there after these.
    drive(commands / 3);
    expectAllRight();
    takeOut();
    const Holdings before = Holdings::now();
    insert(dvdImage(DvdKind::Slides));
    m_unit.command(187, 1);
    drive(commands - commands / 3);
    expectAllRight();
    takeOut();
    const Holdings after = Holdings::now();
    std::cout << m_pressed << " commands; slowest answer "
              << std::chrono::duration_cast<std::chrono::milliseconds>(m_slowest).count() << " ms; "
              << (after.bytes - before.bytes) / 1024 << " KB more, descriptors " << before.descriptors
              << " and " << after.descriptors << ", threads " << before.threads << " and " << after.threads
              << "\n";
    EXPECT_LE(after.bytes - before.bytes, AllowedBytes);
    EXPECT_LE(after.descriptors, before.descriptors + 2);
    EXPECT_TRUE(eventually([&] { return Holdings::now().threads <= before.threads; }));
    EXPECT_EQ(complaints.count(), 0);
}
