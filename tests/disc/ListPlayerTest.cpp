#include "services/disc/player/ListPlayer.h"
#include "base/Paths.h"
#include "tests/disc/DiscUnit.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace zm;
using namespace zm::disc;
using namespace zm::disc::model;
using namespace zm::disc::player;
using namespace zm::test;
using namespace std::chrono_literals;

namespace {

/** An engine in which nothing happens but what the test says. */
class HandEngine : public engine::Engine {
public:
    void start(const engine::Playable& playable, engine::Listener& listener, engine::Milliseconds,
               engine::StartMode) override {
        path = playable.path;
        speed = 1;
        m_listener = &listener;
    }
    void pause() override { speed = 0; }
    void resume() override { speed = 1; }
    void seek(engine::Milliseconds) override {}
    void scan(int factor) override { speed = factor; }
    void view(const engine::PictureView&) override {}
    void choose(const engine::StreamChoice&) override {}
    void follow(const engine::Playable&) override {}
    void followNothing() override {}
    void stop() override { path.clear(); }
    void loudness(const engine::Loudness&) override {}

    /** What plays says to its player. */
    engine::Listener& reports() const {
        return m_listener ? *m_listener : throw std::logic_error("nothing was started");
    }

    std::string path; ///< of what plays, empty for nothing
    int speed = 1;

private:
    engine::Listener* m_listener = nullptr;
};

/** The playback control of a VCD whose films play as the test says. */
class VcdLists : public testing::Test {
protected:
    static constexpr engine::Milliseconds FilmTime{10000};

    /** A disc with these films, which begins with the first of `lists`. */
    void insert(const std::vector<std::string>& films, const std::vector<PlayList>& lists) {
        Contents contents;
        contents.trackType = MediaType::Vcd;
        contents.identity = "a VCD";
        for (const auto& film : films) {
            Item item;
            item.fileId = static_cast<int>(contents.items[kindIndex(MediaKind::Video)].size()) + 1;
            item.rawName = film;
            item.name = film;
            contents.items[kindIndex(MediaKind::Video)].push_back(item);
        }
        contents.playLists = std::make_shared<PlayLists>(PlayLists{lists});
        auto state = DiscState::open(ppsSocket(m_unit.runtime()));
        ASSERT_TRUE(state) << state.error();
        m_state = std::move(*state);
        const auto shared = std::make_shared<Contents>(contents);
        m_resume = std::make_unique<DiscResume>(m_memory, shared);
        m_player = std::make_unique<ListPlayer>(m_loop, *m_state, m_modes, m_engine, nullptr, shared,
                                                *m_resume, ListPlayer::Begin::FirstList, ListPlayer::Exits{});
        m_player->sourceOn();
    }
    /** The same, with its film playing. */
    void play(const std::vector<std::string>& films, const std::vector<PlayList>& lists) {
        insert(films, lists);
        m_engine.reports().engineStarted(FilmTime);
        m_unit.nextState(PlayState::Playing);
        m_unit.mark();
    }
    /** A list of these films, from the disc's beginning on. */
    static PlayList listOf(const std::vector<std::string>& films) {
        PlayList list;
        list.kind = PlayList::Kind::Items;
        list.wait = 0s;
        for (const auto& film : films) {
            list.items.push_back({film, static_cast<int>(list.items.size())});
        }
        return list;
    }
    /** Runs what is due until `path` plays. */
    bool comesTo(const std::string& path) {
        const auto end = std::chrono::steady_clock::now() + 15s;
        while (m_engine.path != path && std::chrono::steady_clock::now() < end) {
            m_loop.iterate(false);
            std::this_thread::sleep_for(1ms);
        }
        return m_engine.path == path;
    }
    void nextTime(int elapsed, int length) {
        m_unit.next("playtime", [=](const Published& each) {
            return each.json()["time"] == elapsed && each.json()["tracktime"] == length;
        });
    }

    DiscUnit m_unit;
    EventLoop m_loop;
    HandEngine m_engine;
    PlayModes m_modes;
    ResumeMemory m_memory{m_unit.resume()};
    std::unique_ptr<DiscState> m_state;
    std::unique_ptr<DiscResume> m_resume;
    std::unique_ptr<ListPlayer> m_player;
};

} // namespace

TEST_F(VcdLists, WhatIsStoppedHasNoTimeAnyMore) {
    play({"film"}, {listOf({"film"})});
    m_engine.reports().engineMoved(4s, FilmTime);
    nextTime(4, 10);
    m_player->stop();
    nextTime(0, 0);
}

TEST_F(VcdLists, EachPressRunsTheFilmFaster) {
    play({"film"}, {listOf({"film"})});
    for (const int factor : {2, 4, 8, 20}) {
        m_player->scan(ScanDirection::Forward);
        m_unit.next("playspeed", std::to_string(factor));
        EXPECT_EQ(m_engine.speed, factor);
    }
    m_player->scan(ScanDirection::Backward);
    m_unit.next("playspeed", "-2");
    EXPECT_EQ(m_engine.speed, -2);
}

TEST_F(VcdLists, PlayEndsAScanAndSaysSo) {
    play({"film"}, {listOf({"film"})});
    m_player->scan(ScanDirection::Forward);
    m_unit.next("playspeed", "2");
    m_player->play();
    m_unit.next("playspeed", "1");
    m_unit.nextState(PlayState::Playing);
    m_unit.next("msgtip", "6");
    EXPECT_EQ(m_engine.speed, 1);
}

TEST_F(VcdLists, AScanThatComesToTheEndIsOver) {
    PlayList list = listOf({"film"});
    list.wait.reset(); // its last picture stands
    play({"film"}, {list});
    m_player->scan(ScanDirection::Forward);
    m_unit.nextState(PlayState::Forward);
    m_engine.reports().engineScanned(engine::ScanEdge::End);
    m_unit.next("playspeed", "1");
    m_unit.nextState(PlayState::Playing);
}

TEST_F(VcdLists, AMenuWithoutAPictureWaitsForItsNumber) {
    PlayList menu;
    menu.kind = PlayList::Kind::Menu;
    menu.choices = {1};
    insert({"film"}, {menu, listOf({"film"})});
    m_unit.nextState(PlayState::Playing);
    EXPECT_EQ(m_engine.path, "");
    m_player->playTrack(1, 0);
    EXPECT_EQ(m_engine.path, "film");
}

TEST_F(VcdLists, AListsTimeEndsAllOfIt) {
    PlayList limited = listOf({"first", "second", "third"});
    limited.length = 3s;
    limited.next = 1;
    PlayList behind;
    behind.kind = PlayList::Kind::Items;
    behind.items = {{"third", 2}};
    play({"first", "second", "third"}, {limited, behind});
    m_engine.reports().engineMoved(2s, FilmTime);
    EXPECT_EQ(m_engine.speed, 1);
    m_engine.reports().engineMoved(3s, FilmTime);
    EXPECT_EQ(m_engine.speed, 0) << "its picture stands until the next list begins";
    EXPECT_TRUE(comesTo("third"));
    m_unit.next("trackinfo", [](const Published& each) { return each.json()["mediaid"] == 3; });
}
