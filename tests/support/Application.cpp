#include "tests/support/Application.h"

#include "DiscOsdView.h"
#include "DiscView.h"
#include "DiscViewController.h"
#include "StartUp.h"
#include "ZMModel/CDiscData.h"
#include "zmcar/AppMessage.h"

#include <deque>
#include <future>
#include <mutex>
#include <utility>

namespace zm::test {

namespace {

/** Code of the message behind which a task of the test waits; no view knows it. */
constexpr int TaskMessage = 0x7e57;

/** Class of the launcher's messages; its first sub-code and status are a resume. */
constexpr int AppsMessage = 3;

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

    void OnAppsMessage(APP_MSG_S* message) override {
        const bool resume = message->word[0] == AppsMessage && message->word[1] == 0 && message->word[2] == 0;
        if (!resume || !std::exchange(holdFirstResume, false)) {
            DiscView::OnAppsMessage(message);
        }
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

    bool holdFirstResume = false;

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
    ObservedView view{MAIN_VIEW_NAME, *CDiscData::GetInstance()};
    DiscOsdView osd{*CDiscData::GetInstance()};
    DiscViewController controller{&view, *CDiscData::GetInstance()};
    bool running = false;
};

Application::Application() : m_parts(std::make_unique<Parts>()) {}

Application::~Application() {
    end();
}

bool Application::start(const ApplicationOptions& options) {
    auto& [view, osd, controller, running] = *m_parts;
    view.holdFirstResume = !options.firstResume;
    running = StartUp(view, osd, controller, {"disc", options.song, !options.song.empty()});
    return running;
}

bool Application::end() {
    return !std::exchange(m_parts->running, false) || ShutDown(m_parts->view, m_parts->controller);
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
