#include "services/bench/commands/Settle.h"

#include <nlohmann/json.hpp>

namespace zm::bench::commands {

namespace {

constexpr std::chrono::milliseconds RetryInterval(10);
// What one round gets at least: with no time to wait, everything is still asked once.
constexpr std::chrono::milliseconds LeastRound(100);

class Settling : public std::enable_shared_from_this<Settling> {
public:
    Settling(unit::HeadUnit& unit, std::chrono::milliseconds timeout, std::function<void(Status)> done)
        : m_unit(unit), m_deadline(std::chrono::steady_clock::now() + timeout), m_done(std::move(done)) {}

    void round() {
        if (m_unit.applicationExpected()) {
            again("the application has not started");
        } else if (quits()) {
            again("the application is ending");
        } else if (!m_unit.ready()) {
            finish();
        } else {
            const auto left = remaining();
            m_unit.shell().ask(
                {{"t", "settle"}, {"timeout", left.count()}},
                [self = shared_from_this()](const Result<Json>& reply) { self->answered(reply); },
                left + RetryInterval);
            m_activity = m_unit.activity();
        }
    }

private:
    std::chrono::milliseconds remaining() const {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            m_deadline - std::chrono::steady_clock::now());
        return std::max(left, LeastRound);
    }

    // An application that was told to quit moves until its process has ended.
    bool quits() const {
        unit::Child* application = m_unit.child("app");
        return application && m_unit.launcher().quitting() &&
               application->state() == unit::Child::State::Running;
    }

    void answered(const Result<Json>& reply) {
        if (!reply) {
            again(reply.error());
        } else if (reply->is_object() && reply->value("quiet", false)) {
            // What it sent before this answer may lie in other sockets: one more turn reads them.
            m_unit.loop().post([self = shared_from_this()] { self->lookAround(); });
        } else {
            again("the application is busy");
        }
    }

    // Whether the head unit itself answered something that the application sees only now.
    void lookAround() {
        if (m_unit.activity() == m_activity) {
            finish();
        } else {
            again("the head unit is busy");
        }
    }

    void again(const std::string& reason) {
        if (std::chrono::steady_clock::now() >= m_deadline) {
            m_done(Error{"not settled in time: " + reason});
            return;
        }
        m_retry =
            afterDelay(m_unit.loop(), m_unit.ready() ? std::chrono::milliseconds(0) : RetryInterval,
                       [self = shared_from_this()] { self->m_unit.loop().post([self] { self->round(); }); });
    }

    void finish() {
        m_unit.compositor().compose();
        m_unit.drainFollowers();
        m_done(ok());
    }

    unit::HeadUnit& m_unit;
    std::chrono::steady_clock::time_point m_deadline;
    std::function<void(Status)> m_done;
    uint64_t m_activity = 0;
    SourceHandle m_retry;
};

} // namespace

void settle(unit::HeadUnit& unit, std::chrono::milliseconds timeout, std::function<void(Status)> done) {
    auto settling = std::make_shared<Settling>(unit, timeout, std::move(done));
    unit.loop().post([settling] { settling->round(); });
}

} // namespace zm::bench::commands
