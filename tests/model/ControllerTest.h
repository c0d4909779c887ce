#pragma once

#include "tests/model/PpsUnit.h"

#include "DiscViewController.h"
#include "zmcar/AppMessage.h"
#include "zmcar/IViewMessage.h"

#include <array>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace zm::test {

using ViewMessage = std::array<int32_t, 4>;

/** The main view, as far as the controller sees it: keeps every message. */
class RecordingView : public Oro::ZMCAR::IViewMessage {
public:
    bool SendViewMessage(const APP_MSG_S& message) override {
        if (onMessage) {
            onMessage(message.word[0]);
        }
        std::lock_guard guard(m_mutex);
        m_messages.push_back({message.word[0], message.word[1], message.word[2], message.word[3]});
        m_changed.notify_all();
        return true;
    }

    /** Waits until `count` messages came since the last call; gives all of them. */
    std::vector<ViewMessage> take(size_t count) {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_messages.size() >= count; });
        return std::exchange(m_messages, {});
    }
    /** The same, the codes only. */
    std::vector<int> codes(size_t count) {
        std::vector<int> codes;
        for (const ViewMessage& message : take(count)) {
            codes.push_back(message[0]);
        }
        return codes;
    }

    std::function<void(int code)> onMessage;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<ViewMessage> m_messages;
};

/** The controller on a real PPS service. */
class ControllerTest : public PpsUnit {
protected:
    RecordingView m_view;
    CDiscData m_data;
    DiscViewController m_controller{&m_view, m_data};
};

/** The same, monitoring. */
class RunningControllerTest : public ControllerTest {
protected:
    RunningControllerTest() {
        m_view.onMessage = [this](int) { m_publishedAtLastMessage = object(NOWPLAYING); };
        publish(VIDEO_STATUS, "zmvideo::first");
        EXPECT_TRUE(m_controller.Init());
        EXPECT_TRUE(m_controller.Start());
        // The first read gives an object as it is; from the second on every change arrives. This object is
        // the last.
        EXPECT_THAT(m_view.codes(1), testing::ElementsAre(DISC_VMSG_VIDEOSTATUS));
    }
    ~RunningControllerTest() override { m_controller.Stop(); }

    /**
     * Publishes lines of one object and expects these messages and no others. A last attribute, which always
     * gives one message, shows that all others have come; returns what was published for the navigator before
     * that one.
     */
    std::string expectMessages(const std::string& path, const std::string& lines, std::vector<int> codes) {
        const std::map<std::string, std::pair<const char*, int>> LAST = {
            {STATUS, {"keyinvalid::last", DISC_VMSG_KEYINVALID}},
            {DEVICE, {"mixedtype::0", DISC_VMSG_MIXEDTYPE}},
            {PLAYING, {"playtime::last", DISC_VMSG_PLAYTIME}},
            {MPEGINFO, {"version::last", DISC_VMSG_VERSION}},
            {VIDEO_STATUS, {"zmvideo::last", DISC_VMSG_VIDEOSTATUS}},
        };
        publish(path, lines);
        const bool isMonitored = LAST.contains(path);
        const auto& [last, code] = LAST.at(isMonitored ? path : STATUS);
        publish(isMonitored ? path : STATUS, last);
        codes.push_back(code);
        EXPECT_EQ(m_view.codes(codes.size()), codes);
        return m_publishedAtLastMessage;
    }

private:
    std::string m_publishedAtLastMessage; ///< written on the monitor thread; read once the message was taken
};

} // namespace zm::test
