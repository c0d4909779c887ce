#include "services/bench/web/State.h"

#include "base/JsonMessage.h"
#include "services/bench/web/WebSocketClient.h"

#include <algorithm>

namespace zm::bench::web {

namespace {

constexpr size_t MaxStatePages = 16;
constexpr size_t MaxPending = 2000;
// Batches on their way to a page before it counts as lagging.
constexpr uint64_t MaxStatesInFlight = 8;
constexpr std::chrono::milliseconds FlushInterval(50);

} // namespace

struct State::Page {
    explicit Page(SoupWebsocketConnection* connection) : client(connection) {}
    WebSocketClient client;
    uint64_t sent = 0;
    uint64_t acknowledged = 0;
    bool lagging = false;
};

State::State(EventLoop& loop, Sources sources) : m_loop(loop), m_sources(std::move(sources)) {}

State::~State() = default;

void State::add(SoupWebsocketConnection* connection) {
    auto owned = std::make_unique<Page>(connection);
    if (m_pages.size() >= MaxStatePages) {
        owned->client.close("too many pages");
        return;
    }
    // What is pending goes to the pages that know what came before it.
    flush();
    Page& page = *m_pages.emplace_back(std::move(owned));
    page.client.onMessage = [&page](const nlohmann::json& message) {
        if (const auto ack = message.find("ack"); ack != message.end() && ack->is_number_unsigned()) {
            page.acknowledged = std::clamp(ack->get<uint64_t>(), page.acknowledged, page.sent);
        }
    };
    page.client.onClosed = [this, &page] {
        m_pages.remove_if([&](const auto& other) { return other.get() == &page; });
        if (m_pages.empty()) {
            m_timer.reset();
        }
    };
    sendAll(page);
    if (!m_timer.active()) {
        m_timer = everyInterval(m_loop, FlushInterval, [this] { flush(); });
    }
}

void State::sendAll(Page& page) {
    nlohmann::json batch = nlohmann::json::array({{{"t", "reset"}}});
    auto state = m_sources.state();
    state["t"] = "state";
    batch.push_back(std::move(state));
    for (const auto& [object, text] : m_sources.objects()) {
        batch.push_back({{"t", "pps"}, {"object", object}, {"text", text}, {"changed", false}});
    }
    batch.push_back({{"t", "log"}, {"entries", m_sources.logTail()}});
    page.lagging = false;
    page.client.sendText(jsonText({{"seq", ++page.sent}, {"messages", batch}}));
}

void State::ppsChanged(const std::string& object, const std::string& text) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    push({{"t", "pps"},
          {"object", object},
          {"text", text},
          {"changed", true},
          // Pages get it later: changes are collected.
          {"time", std::chrono::duration_cast<std::chrono::milliseconds>(now).count()}});
}

void State::requested(const nlohmann::json& request) {
    push({{"t", "request"}, {"request", request}});
}

void State::push(const nlohmann::json& message) {
    if (!m_pages.empty()) {
        m_pending.push_back(message);
    }
}

void State::flush() {
    if (m_pages.empty()) {
        return;
    }
    auto state = m_sources.state();
    if (state != m_lastState) {
        m_lastState = state;
        state["t"] = "state";
        m_pending.push_back(std::move(state));
    }
    if (auto entries = m_sources.newLog(); !entries.empty()) {
        m_pending.push_back({{"t", "log"}, {"entries", std::move(entries)}});
    }
    const bool flood = m_pending.size() > MaxPending;
    for (auto& page : m_pages) {
        page->lagging = page->lagging || (flood || page->sent - page->acknowledged >= MaxStatesInFlight);
        if (page->lagging) {
            if (page->sent == page->acknowledged) {
                sendAll(*page);
            }
        } else if (!m_pending.empty()) {
            page->client.sendText(jsonText({{"seq", ++page->sent}, {"messages", m_pending}}));
        }
    }
    m_pending.clear();
}

} // namespace zm::bench::web
