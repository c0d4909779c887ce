#include "tests/support/UnitServer.h"

#include "services/bench/commands/Settle.h"
#include "services/bench/unit/PpsText.h"

#include <future>

namespace zm::test {

UnitServer::UnitServer(bench::unit::HeadUnitOptions options)
    : m_unit(std::make_unique<bench::unit::HeadUnit>(m_loop, std::move(options))),
      m_processor(std::make_unique<bench::commands::Processor>(*m_unit)) {
    m_unit->onPpsChange = [this](const std::string& object, const std::string& text) {
        std::lock_guard lock(m_mutex);
        for (const auto& delta : bench::unit::ppsDeltas(text)) {
            auto& lines = m_published[object];
            lines.insert(lines.end(), delta.begin(), delta.end());
        }
    };
}

UnitServer::~UnitServer() {
    if (m_thread.joinable()) {
        m_loop.quit();
        m_thread.join();
    }
}

std::string UnitServer::start() {
    if (auto started = m_unit->start(); !started) {
        return started.error();
    }
    m_thread = std::thread([this] { m_loop.run(); });
    return {};
}

UnitServer::Answer UnitServer::run(const std::vector<std::string>& words) {
    Answer answer;
    std::promise<void> done;
    m_loop.post([&] {
        m_processor->execute(std::make_shared<bench::commands::Run>(
            words, "/",
            bench::commands::Run::Sink{[&](const std::string& text) { answer.out += text; },
                                       [&](const std::string& text) { answer.err += text; },
                                       [&](int status) {
                                           answer.exit = status;
                                           done.set_value();
                                       }}));
    });
    done.get_future().wait();
    return answer;
}

Image UnitServer::picture() {
    std::promise<Image> copy;
    m_loop.post([&] { copy.set_value(m_unit->compositor().compose()); });
    return copy.get_future().get();
}

bool UnitServer::waitReady() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    std::promise<bool> ready;
    std::function<void()> look = [&] {
        if (m_unit->ready() || std::chrono::steady_clock::now() > deadline) {
            ready.set_value(m_unit->ready());
        } else {
            m_loop.post(look);
        }
    };
    m_loop.post(look);
    return ready.get_future().get();
}

std::vector<std::string> UnitServer::published(const std::string& object) const {
    std::lock_guard lock(m_mutex);
    auto found = m_published.find(object);
    return found == m_published.end() ? std::vector<std::string>() : found->second;
}

} // namespace zm::test
