#include "tests/framework/TestApplication.h"

#include "BuildPaths.h"

#include <fstream>

namespace zm::test {

namespace {

constexpr const char* Common = R"(
    "languages": ["en", "de"],
    "themes": {"night": {"page": "#000000", "ink": "#FFFFFF"}, "day": {"page": "#FFFFFF", "ink": "#000000"}},
    "styles": {"plain": {"fill": "page", "color": "ink", "iconColor": "ink"}},
    "texts": {"30": {"en": "Disc", "de": "Scheibe"}},
)";

constexpr const char* MainWindows = R"(
    "windows": [
        {"id": 1, "name": "start", "background": "page", "items": [
            {"id": 10, "kind": "text", "rect": [0, 0, 200, 40], "style": "plain", "text": 30}]},
        {"id": 6, "name": "play", "background": "page", "items": [
            {"id": 20, "kind": "button", "rect": [100, 100, 100, 100], "style": "plain", "text": "go"},
            {"id": 21, "kind": "button", "rect": [300, 100, 100, 100], "style": "plain", "enabled": false},
            {"id": 22, "kind": "text", "rect": [600, 120, 100, 60], "style": "plain", "text": "beside"},
            {"id": 11, "kind": "animation", "rect": [0, 300, 60, 60], "style": "plain", "visible": false}]}
    ]
)";

constexpr const char* OverlayWindows = R"(
    "windows": [
        {"id": 1, "name": "bar", "items": [
            {"id": 40, "kind": "button", "rect": [100, 100, 100, 50], "style": "plain"}]},
        {"id": 20, "name": "pad", "stacked": true, "items": [
            {"id": 41, "kind": "button", "rect": [600, 100, 100, 100], "style": "plain"}]}
    ]
)";

} // namespace

void writeResources(const std::string& folder) {
    std::ofstream(folder + "/MAIN.zmrc_device") << "{" << Common << MainWindows << "}";
    std::ofstream(folder + "/OSD.zmrc_device") << "{" << Common << OverlayWindows << "}";
}

std::string fontFolder() {
    return ZM_BINARY_DIR "/share/fonts/";
}

TestApplication::TestApplication(FakeHeadUnit& unit) : headUnit(unit) {
    writeResources(headUnit.folder());
}

bool TestApplication::initialise() {
    return main.Init(headUnit.folder() + "/", "zmdisc", "MAIN.zmrc_device", "1-7-zelmar-disc", fontFolder(),
                     800, 480);
}

bool TestApplication::join() {
    return osd.Init("Disc_osd", headUnit.folder() + "/OSD.zmrc_device", fontFolder(), 800, 480) &&
           main.JoinView(&osd, "Disc_osd", 3);
}

void TestApplication::start() {
    ASSERT_TRUE(initialise());
    ASSERT_TRUE(join());
    ASSERT_TRUE(main.StartEventLoop());
    ASSERT_TRUE(main.ShowWnd(1, true, 0));
    ASSERT_TRUE(headUnit.waitForShell("running"));
}

void FrameworkTest::run() {
    ASSERT_NO_FATAL_FAILURE(app.start());
    headUnit.settle();
    app.events.take();
    app.events.forgetThreads();
}

} // namespace zm::test
