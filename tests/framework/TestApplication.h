#pragma once

#include "tests/framework/FakeHeadUnit.h"
#include "tests/framework/Recorder.h"
#include "zmcar/PublicController.h"
#include "zmcar/ViewOsd.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <tuple>

namespace zm::test {

/** A view that writes down each call of its handlers. `Base` is ViewUI or ViewOsd. */
template <class Base>
class RecordingView : public Base {
public:
    RecordingView(Recorder& recorder, std::string prefix)
        : m_recorder(recorder), m_prefix(std::move(prefix)) {}

    /** Called inside a handler, with the handler's line without the prefix. */
    std::function<void(const std::string& line)> onHandler;
    std::set<int> keys{20, 21};

    int OnUserMessage(APP_MSG_S* msg) override {
        note("message " + std::to_string(msg->word[0]) + " " + std::to_string(msg->word[1]));
        return 0;
    }
    void OnAppsMessage(APP_MSG_S* msg) override {
        note("apps " + std::to_string(msg->word[0]) + " " + std::to_string(msg->word[1]) + " " +
             std::to_string(msg->word[2]) + " " + std::to_string(msg->word[3]));
    }
    void OnLanguageChange(int language) override { note("language " + std::to_string(language)); }
    void OnUIStytleChange(int style) override { note("style " + std::to_string(style)); }
    bool OnKeyboard(int key) override {
        note("key " + std::to_string(key));
        return keys.contains(key);
    }
    void OnClick(CUIWndMng* wndMng, long wndId, long ctrlId, int btState) override {
        EXPECT_EQ(wndMng, this->GetUIWndMgrWrapper());
        note("click " + std::to_string(wndId) + " " + std::to_string(ctrlId) + " " + std::to_string(btState));
    }
    bool OnLButtonDown(int x, int y) override {
        note("down " + std::to_string(x) + " " + std::to_string(y));
        return true;
    }
    bool OnLButtonUp(int x, int y) override {
        note("up " + std::to_string(x) + " " + std::to_string(y));
        return true;
    }
    void OnShow(int wndId, bool show, int flag) override {
        note("show " + std::to_string(wndId) + " " + std::to_string(show) + " " + std::to_string(flag));
    }
    int OnChildPost(const char* child) override {
        note(std::string("child ") + child);
        return 1;
    }
    void OnClose() override { note("close"); }

private:
    void note(const std::string& line) {
        m_recorder.add(m_prefix + line);
        if (onHandler) {
            onHandler(line);
        }
    }
    Recorder& m_recorder;
    std::string m_prefix;
};

/** A controller that writes down each changed attribute. */
class RecordingController : public Oro::ZMCAR::PublicController {
public:
    RecordingController(Oro::ZMCAR::IViewMessage* view, Recorder& recorder)
        : PublicController(view), m_recorder(recorder) {}
    ~RecordingController() override { Stop(); }

    std::function<void()> onChange;

    void OnAttributeChange(int key, pps_attrib_t* attr) override {
        m_recorder.add(std::to_string(key) + " " + attr->attr_name + ":" + attr->encoding + ":" +
                       attr->value);
        if (onChange) {
            onChange();
        }
    }

private:
    Recorder& m_recorder;
};

/** The resource files of a small application with a main view and an overlay. */
void writeResources(const std::string& folder);
std::string fontFolder();

/** A small application on the framework: both views and a controller, as an entry function wires them. */
class TestApplication {
public:
    explicit TestApplication(FakeHeadUnit& headUnit);

    /** Initialises, joins and runs, with page 1 of the main view shown. */
    void start();
    bool initialise();
    bool join();

    FakeHeadUnit& headUnit;
    Recorder events;
    Recorder changes;
    RecordingView<Oro::ZMCAR::ViewUI> main{events, ""};
    RecordingView<Oro::ZMCAR::ViewOsd> osd{events, "osd "};
    RecordingController controller{&main, changes};
};

/** What most tests start from. The clock is manual. */
class FrameworkTest : public testing::Test {
protected:
    /** Brings the application to its running state and forgets what happened up to there. */
    void run();

    FakeHeadUnit headUnit{{{"manualClock", true}, {"devices", {{"2", 1}, {"7", 200}, {"9", nullptr}}}}};
    TestApplication app{headUnit};
};

} // namespace zm::test
