#include "platform/linux/framework/ShellCommands.h"
#include "platform/linux/framework/ViewImpl.h"
#include "platform/linux/qdb/QdbHold.h"

#include <nlohmann/json.hpp>

namespace zm {

using json = nlohmann::json;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

namespace {

// How long one timer's consequences may take to come to rest while the clock is advanced.
constexpr milliseconds AdvanceLimit(10000);
constexpr int DefaultSettleMs = 5000;

constexpr const char* Roles[] = {"main", "osd"};

// Takes out of `views` the items that are as they were when this was asked for the last time. On the event thread.
void leaveChanges(json& views) {
    static json before;
    json all = views;
    for (auto& [role, view] : views.items()) {
        for (auto& [number, window] : view.at("windows").items()) {
            const auto path = json::json_pointer("/" + role + "/windows/" + number + "/items");
            if (!before.contains(path)) {
                continue;
            }
            const json& old = before.at(path);
            json changed = json::object();
            for (auto& [id, item] : window.at("items").items()) {
                if (const auto found = old.find(id); found == old.end() || *found != item) {
                    changed[id] = std::move(item);
                }
            }
            window["items"] = std::move(changed);
        }
    }
    before = std::move(all);
}

void screen(Application& application, const json& message, const Reply& reply) {
    const std::string only = message.contains("view") && message["view"].is_string() ? message["view"] : "";
    std::optional<int> window;
    if (message.contains("window") && message["window"].is_number()) {
        window = message["window"].get<int>();
    }
    const bool changes = message.value("changes", false);
    replyFromEvent(application, reply, [&application, only, window, changes] {
        json views = json::object();
        for (const char* role : Roles) {
            const ViewImpl* view = application.viewByRole(role);
            if (view && (only.empty() || only == role)) {
                views[role] = view->describe(window);
            }
        }
        if (changes) {
            leaveChanges(views);
        }
        return views;
    });
}

// What the user sees of all views, the one in front last.
void seen(Application& application, const json&, const Reply& reply) {
    replyFromEvent(application, reply, [&application] {
        json all = json::array();
        const ViewImpl* front = application.viewByRole("osd");
        front = front && front->spec.visible ? front : nullptr;
        for (const char* role : Roles) {
            const ViewImpl* view = application.viewByRole(role);
            if (!view || !view->spec.visible) {
                continue;
            }
            for (auto& entry : view->scene->describeSeen()) {
                const auto& rect = entry["rect"];
                const int x = rect[0].get<int>() + rect[2].get<int>() / 2;
                const int y = rect[1].get<int>() + rect[3].get<int>() / 2;
                if (view == front || !front || !front->scene->hits(x, y)) {
                    entry["view"] = role;
                    all.push_back(std::move(entry));
                }
            }
        }
        return json{{"seen", std::move(all)}};
    });
}

void drawn(Application& application, const json&, const Reply& reply) {
    replyFromEvent(application, reply, [&application] {
        application.flushFrames();
        json stale = json::object();
        for (const char* role : Roles) {
            ViewImpl* view = application.viewByRole(role);
            if (const std::string text = view ? view->staleness() : ""; !text.empty()) {
                stale[role] = text;
            }
        }
        return stale;
    });
}

// Waits until everything drawn is on the screen, and what fades has faded. On the coordinator thread.
bool syncFrames(Application& application, TimePoint deadline) {
    auto synced = std::make_shared<std::atomic<bool>>(false);
    application.events().runAndWait(
        [&application, synced, deadline] {
            application.finishFades();
            const auto left = std::chrono::duration_cast<milliseconds>(deadline - steady_clock::now());
            *synced = static_cast<bool>(application.screen()->sync(left));
            // With the buffers that came back, what had to wait is shown as well.
            application.flushFrames();
        },
        deadline);
    return *synced;
}

void settle(Application& application, const json& message, const Reply& reply) {
    const TimePoint deadline = steady_clock::now() + milliseconds(message.value("timeout", DefaultSettleMs));
    application.coordinator().post([&application, reply, deadline] {
        const Settler::Outcome outcome = application.settler().settle(deadline);
        const bool synced = outcome != Settler::Outcome::Restless && syncFrames(application, deadline);
        reply.done({{"quiet", synced && outcome == Settler::Outcome::Quiet}});
    });
}

// Shows the pages as they are, without waiting for anybody else.
void rest(Application& application, const json&, const Reply& reply) {
    application.coordinator().post([&application, reply] {
        syncFrames(application, steady_clock::now() + milliseconds(DefaultSettleMs));
        reply.done();
    });
}

// Lets the clock go on to `target`, with everything at rest after each alarm that called the application.
bool advanceTo(Application& application, int64_t target) {
    auto called = std::make_shared<std::atomic<bool>>(true);
    while (*called) {
        const TimePoint deadline = steady_clock::now() + AdvanceLimit;
        if (application.settler().settle(deadline) == Settler::Outcome::Restless) {
            return false;
        }
        *called = false;
        const auto step = [&application, called, target] {
            *called = application.clock().advanceToHandler(target);
        };
        if (!application.events().runAndWait(step, deadline)) {
            return false;
        }
    }
    return syncFrames(application, steady_clock::now() + AdvanceLimit);
}

void advance(Application& application, const json& message, const Reply& reply) {
    if (!application.clock().manual()) {
        reply.failed("advance: the clock is not manual");
        return;
    }
    application.coordinator().post([&application, reply, ms = message.at("ms").get<int64_t>()] {
        if (advanceTo(application, application.clock().nowMs() + ms)) {
            reply.done();
        } else {
            reply.failed("advance: the application does not come to rest");
        }
    });
}

void hold(Application&, const json& message, const Reply& reply) {
    qdbHold(message.at("rows").get<int>());
    reply.done();
}

void unhold(Application&, const json&, const Reply& reply) {
    qdbRelease();
    reply.done();
}

constexpr ShellCommand Inspections[] = {
    {"screen", screen}, {"seen", seen},       {"drawn", drawn}, {"settle", settle},
    {"rest", rest},     {"advance", advance}, {"hold", hold},   {"unhold", unhold},
};

} // namespace

std::span<const ShellCommand> inspectionCommands() {
    return Inspections;
}

} // namespace zm
