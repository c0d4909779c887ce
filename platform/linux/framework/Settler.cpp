#include "platform/linux/framework/Settler.h"

#include <algorithm>

namespace zm {

using SteadyClock = std::chrono::steady_clock;

namespace {

// How soon a waiting `settle` notices that it is to give up.
constexpr std::chrono::milliseconds Slice(50);

} // namespace

void Settler::add(const std::shared_ptr<ActivitySource>& source) {
    MutexLock lock(m_mutex);
    std::erase_if(m_sources, [](const auto& other) { return other.expired(); });
    m_sources.push_back(source);
}

Settler::Outcome Settler::settle(TimePoint deadline) {
    bool ran = false;
    do {
        const Sources all = sources();
        const auto total = [&all] {
            uint64_t sum = 0;
            for (const auto& source : all) {
                sum += source->activity();
            }
            return sum;
        };
        const uint64_t before = total();
        for (const auto& source : all) {
            if (!drain(*source, deadline)) {
                return Outcome::Restless;
            }
        }
        if (total() == before) {
            return ran ? Outcome::Calmed : Outcome::Quiet;
        }
        ran = true;
    } while (SteadyClock::now() < deadline && !m_givenUp);
    return Outcome::Restless;
}

Settler::Sources Settler::sources() {
    MutexLock lock(m_mutex);
    Sources alive;
    for (const auto& weak : m_sources) {
        if (auto source = weak.lock()) {
            alive.push_back(std::move(source));
        }
    }
    return alive;
}

bool Settler::drain(ActivitySource& source, TimePoint deadline) const {
    while (!m_givenUp) {
        const TimePoint now = SteadyClock::now();
        if (source.drain(std::min(deadline, now + Slice))) {
            return true;
        }
        if (now >= deadline) {
            return false;
        }
    }
    return false;
}

} // namespace zm
