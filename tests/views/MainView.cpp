#include "tests/views/MainView.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <map>

namespace zm::test {

namespace {

constexpr int FILES = 12;

std::vector<Json> parsed(const std::vector<std::string>& lines) {
    std::vector<Json> records;
    for (const std::string& line : lines) {
        records.push_back(Json::parse(line));
    }
    return records;
}

/** The JSON of an attribute line "name:json:{...}". */
Json valueOf(const std::string& line) {
    return Json::parse(line.substr(line.find('{')));
}

} // namespace

namespace {

UnitOptions with(const Catalogue& catalogue, UnitOptions options) {
    options.catalogue = catalogue.path();
    return options;
}

} // namespace

MainView::MainView(UnitOptions options) : unit(with(catalogue, std::move(options))) {
    catalogue.files(FILES, Catalogue::Music, "song");
    catalogue.files(FILES, Catalogue::Video, "film");
    catalogue.files(FILES, Catalogue::Picture, "photo");
    for (const auto type : {Catalogue::Music, Catalogue::Video, Catalogue::Picture}) {
        catalogue.folder(1, 0, type, "root", 0, FILES);
    }
}

void MainView::play(int mediaType) {
    unit.disc.videoMode(VIDEO_MODE_ON);
    unit.disc.insert(mediaType);
    unit.disc.track(
        {.curMediaId = 1, .curMediaIds = FILES, .mediaId = 1, .mediaIds = FILES, .parentFolder = 1});
    unit.clearCommands();
    unit.clearRequests();
}

void MainView::openList() {
    unit.click(WND_AUDIO_PLAY, ITEM_TO_LIST);
    unit.advance(LIST_WAIT);
    unit.clearCommands();
    unit.clearRequests();
}

void MainView::appsMessage(int kind, int subCode, int first, int second) {
    unit.onViewThread([&] {
        APP_MSG_S message{{kind, subCode, first, second}};
        unit.view().OnAppsMessage(&message);
    });
    unit.settle();
}

void MainView::expire(int timer) {
    appsMessage(3, 2, timer);
}

void MainView::viewMessage(int code) {
    unit.onViewThread([&] {
        APP_MSG_S message{{code, 0, 0, 0}};
        EXPECT_EQ(unit.view().OnUserMessage(&message), 0);
    });
    unit.settle();
}

void MainView::swipe(int window, int control, int fromX, int toX, int y) {
    unit.onViewThread([&] {
        EXPECT_TRUE(unit.view().OnLButtonDown(fromX, y));
        unit.view().OnClick(nullptr, window, control, BT_STATE_PRESSED);
        EXPECT_TRUE(unit.view().OnLButtonUp(toX, y));
        unit.view().OnClick(nullptr, window, control, BT_STATE_RELEASED);
    });
    unit.settle();
}

std::vector<std::string> MainView::captures() {
    std::vector<std::string> states;
    for (const std::string& line : unit.published(VIDEO_COMMAND)) {
        states.push_back(valueOf(line).at("status"));
    }
    return states;
}

std::vector<std::string> MainView::applications() {
    std::vector<std::string> names;
    for (const Json& request : parsed(unit.requests())) {
        if (request.at("op") == "QueryLauncher") {
            names.push_back(request.at("app").get<std::string>() + " " +
                            request.at("data").get<std::string>());
        }
    }
    return names;
}

int MainView::beeps() {
    int count = 0;
    for (const Json& request : parsed(unit.requests())) {
        count += request.at("op") == "ToBeep";
    }
    return count;
}

std::vector<std::string> MainView::logged(size_t begin, const std::vector<std::string>& texts) {
    std::vector<std::string> found;
    const std::vector<std::string> lines = unit.log();
    for (size_t i = begin; i < lines.size(); ++i) {
        for (const std::string& text : texts) {
            if (lines[i].find(text) != std::string::npos) {
                found.push_back(text);
            }
        }
    }
    return found;
}

void MainView::expectLines(const std::vector<std::string>& lines, const std::function<void()>& action) {
    const auto begin = unit.log().size();
    action();
    EXPECT_EQ(logged(begin, lines), lines);
}

Reported MainView::reported() {
    constexpr int NO_FOLDER = 0x7FFE0000; // with no sign that a catalogue is complete
    unit.disc.updateDb(NO_FOLDER);
    Reported view;
    const auto states = unit.log("[DiscView::OnUserMsgUpdateDb] m_nClickFolderId=");
    const auto types = unit.log("[DiscView::OnUserMsgUpdateDb] m_nCurType=");
    if (states.empty() || types.empty()) {
        ADD_FAILURE() << "the view does not tell its state";
        return view;
    }
    const auto from = [](const std::string& line) { return line.c_str() + line.find("m_n"); };
    EXPECT_EQ(std::sscanf(from(states.back()), "m_nClickFolderId=%d,m_uiCurState=%d,m_nCurListFrom=%d",
                          &view.folder, &view.state, &view.source),
              3);
    EXPECT_EQ(std::sscanf(from(types.back()), "m_nCurType=%d", &view.browsed), 1);
    return view;
}

int MainView::returnTarget() {
    unit.click(WND_AUDIO_PLAY, ITEM_TO_LIST, BT_STATE_RELEASED);
    unit.advance(LIST_WAIT);
    const std::string name = "m_nPlayListFrom:";
    const auto lines = unit.log("[OnHandleUIReturnList]--" + name);
    if (lines.empty()) {
        ADD_FAILURE() << "the view does not return to a list";
        return -1;
    }
    return std::stoi(lines.back().substr(lines.back().find(name) + name.size()));
}

void MainView::reach(int state) {
    unit.device(DEV_STATUS_PARKING, 1);
    switch (state) {
    case VIEW_STATE_MUSIC_LIST:
        play(PLAY_TYPE_MUSIC);
        openList();
        break;
    case VIEW_STATE_VIDEO_LIST:
        play(PLAY_TYPE_VIDEO);
        unit.disc.videoMode(VIDEO_MODE_TO_LIST);
        unit.advance(LIST_WAIT);
        break;
    case VIEW_STATE_PHOTO_LIST:
        play(PLAY_TYPE_PHOTO);
        unit.key(K_Return);
        unit.advance(LIST_WAIT);
        break;
    case VIEW_STATE_AUDIO_PLAY:
        play(PLAY_TYPE_MUSIC);
        break;
    case VIEW_STATE_VIDEO_PLAY:
        play(PLAY_TYPE_DVD);
        break;
    case VIEW_STATE_PHOTO_PLAY:
        play(PLAY_TYPE_PHOTO);
        break;
    case VIEW_STATE_GOTO:
        play(PLAY_TYPE_MUSIC);
        unit.key(K_GOTO);
        break;
    case VIEW_STATE_LOADING:
        unit.disc.state(DISC_STATE_LOADING);
        break;
    case VIEW_STATE_EXIT:
        unit.disc.state(DISC_STATE_EJECTING);
        break;
    case VIEW_STATE_NO_DISC:
        unit.disc.state(DISC_STATE_LOADING);
        unit.disc.presence(0);
        break;
    case VIEW_STATE_DISC_ERROR:
        unit.disc.state(DISC_STATE_ERROR);
        break;
    case VIEW_STATE_REGION_ERROR:
        unit.disc.error(ERROR_STATUS_REGION);
        break;
    default:
        FAIL() << "nothing leads to state " << state;
    }
    unit.clearCommands();
    unit.clearRequests();
}

bool MainView::videoShown() {
    const Json video = unit.video();
    return video.value("posted", false) && video.value("visible", false);
}

void MainView::withoutController(const std::function<void(DiscView&)>& task) {
    unit.onViewThread([&] {
        unit.view().AttachControl(nullptr);
        task(unit.view());
        unit.view().AttachControl(&unit.controller());
    });
}

void MainView::clickWithoutController(int window, int control) {
    withoutController([&](DiscView& view) { view.OnClick(nullptr, window, control, BT_STATE_RELEASED); });
}

void MainView::expectLeftForTheList(const std::string& command, int state) {
    EXPECT_FALSE(unit.osd.visible());
    EXPECT_FALSE(videoShown());
    ASSERT_FALSE(unit.commands().empty());
    EXPECT_EQ(unit.commands().front(), command);
    unit.advance(LIST_WAIT);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    EXPECT_EQ(this->state(), state);
    unit.advance(8s);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
}

std::vector<uint8_t> MainView::cut(const Rect& area) {
    const Image whole = unit.picture();
    std::vector<uint8_t> pixels;
    for (int y = area.y; y < area.y + area.h; ++y) {
        pixels.insert(pixels.end(), whole.at(area.x, y), whole.at(area.x, y) + 4L * area.w);
    }
    return pixels;
}

void MainView::expectChange(const View& view, int page, std::initializer_list<int> items,
                            const std::function<void()>& action) {
    std::map<int, std::vector<uint8_t>> before;
    for (const int id : items) {
        before[id] = cut(view.item(page, id).rect);
    }
    action();
    for (const int id : items) {
        EXPECT_TRUE(cut(view.item(page, id).rect) != before[id]) << "item " << id << " of page " << page;
    }
}

} // namespace zm::test
