#include "tests/support/Application.h"

#include "DiscOsdView.h"
#include "DiscView.h"
#include "DiscViewController.h"
#include "ZMPath.h"
#include "zmcar/AppMessage.h"

#include <deque>
#include <future>
#include <mutex>
#include <unistd.h>

namespace zm::test {

namespace {

/** Code of the message behind which a task of the test waits; no view knows it. */
constexpr int TaskMessage = 0x7e57;

/** The main view, which also notes its messages and runs the test's tasks. */
class ObservedView : public DiscView {
public:
    using DiscView::DiscView;

    int OnUserMessage(APP_MSG_S* message) override {
        if (message->word[0] == TaskMessage) {
            runTask();
            return 0;
        }
        {
            std::lock_guard lock(m_mutex);
            m_codes.push_back(message->word[0]);
        }
        return DiscView::OnUserMessage(message);
    }

    void post(std::function<void()> task) {
        {
            std::lock_guard lock(m_mutex);
            m_tasks.push_back(std::move(task));
        }
        SendViewMessage(APP_MSG_S{{TaskMessage, 0, 0, 0}});
    }

    std::vector<int> codes() const {
        std::lock_guard lock(m_mutex);
        return m_codes;
    }

private:
    void runTask() {
        std::function<void()> task;
        {
            std::lock_guard lock(m_mutex);
            task = std::move(m_tasks.front());
            m_tasks.pop_front();
        }
        task();
    }

    mutable std::mutex m_mutex;
    std::deque<std::function<void()>> m_tasks;
    std::vector<int> m_codes;
};

} // namespace

struct Application::Parts {
    ObservedView view{"zmdisc"};
    DiscOsdView osd;
    DiscViewController controller{&view};
    bool running = false;
};

Application::Application() : m_parts(std::make_unique<Parts>()) {}

Application::~Application() {
    end();
}

bool Application::start(const std::string& song) {
    auto& [view, osd, controller, running] = *m_parts;
    const std::string resources = Oro::ZMCAR::GetZMRCCPath();
    const std::string fonts = Oro::ZMCAR::GetZMFontPath();
    view.AttachControl(&controller);
    osd.AttachControl(&controller);
    view.MaskSignals();
    const std::string group = "1-" + std::to_string(getpid()) + "-zelmar-disc";
    if (!view.Init(resources, "zmdisc", "DISC.zmrc_device", group, fonts, 800, 480)) {
        return false;
    }
    running = true;
    view.ViewInit();
    if (!song.empty()) {
        view.SetVoicePlayPar(song);
    }
    if (!osd.Init("Disc_osd", resources + "OVERLAY.zmrc_device", fonts, 800, 480)) {
        return false;
    }
    osd.ViewInit();
    if (!view.JoinView(&osd, "Disc_osd", 3)) {
        return false;
    }
    controller.Init();
    controller.SetAppName("zmdisc");
    for (int monitor : {1, 4, 2}) {
        controller.StartMonitor(monitor);
    }
    controller.Start();
    view.SetWaitDeviceStateTimer();
    if (!view.StartEventLoop()) {
        return false;
    }
    view.ShowWnd(1, true, 0);
    osd.ShowWnd(20, true, 0);
    return osd.EnableAlphaBlending(true);
}

bool Application::end() {
    auto& [view, osd, controller, running] = *m_parts;
    if (!running) {
        return true;
    }
    running = false;
    return view.Close() && controller.Stop() && controller.Close();
}

void Application::onViewThread(std::function<void()> task) {
    std::promise<void> done;
    m_parts->view.post([&] {
        task();
        done.set_value();
    });
    done.get_future().wait();
}

std::vector<int> Application::viewMessages() const {
    return m_parts->view.codes();
}

DiscView& Application::view() {
    return m_parts->view;
}

DiscOsdView& Application::osd() {
    return m_parts->osd;
}

DiscViewController& Application::controller() {
    return m_parts->controller;
}

} // namespace zm::test
