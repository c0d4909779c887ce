#include "tests/views/main_view.h"

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

MainView::MainView() : unit({.catalogue = catalogue.path()}) {
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

void MainView::expectLeftForTheList(const std::string& command, int state) {
    EXPECT_FALSE(inside.overlayShown());
    EXPECT_FALSE(unit.osd.visible());
    EXPECT_FALSE(inside.videoIsVisible());
    ASSERT_FALSE(unit.commands().empty());
    EXPECT_EQ(unit.commands().front(), command);
    EXPECT_EQ(inside.state(), state);
    unit.advance(LIST_WAIT);
    EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    unit.advance(8s);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
}

} // namespace zm::test
