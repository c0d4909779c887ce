#pragma once

#include "services/disc/player/ResumeMemory.h"

#include <chrono>
#include <optional>
#include <string>

namespace zm::disc::player {

/** Keeps how far one disc has come, not more often than needed. On the service's loop. */
class ResumeKeeper {
public:
    /** `memory` outlives it. */
    ResumeKeeper(ResumeMemory& memory, std::string identity)
        : m_memory(memory), m_identity(std::move(identity)) {}
    /** Keeps the last that it was told. */
    ~ResumeKeeper();
    ResumeKeeper(const ResumeKeeper&) = delete;
    ResumeKeeper& operator=(const ResumeKeeper&) = delete;

    /** Where the disc was left the last time; nothing for a new one. */
    std::optional<ResumePoint> left() const { return m_memory.find(m_identity); }
    /** Called often while the disc plays: what is kept is a few seconds old at most. */
    void moved(const ResumePoint& point);
    /** Keeps what it was told last, at once. */
    void flush();

private:
    ResumeMemory& m_memory;
    std::string m_identity;
    std::optional<ResumePoint> m_told;
    std::optional<ResumePoint> m_kept;
    std::chrono::steady_clock::time_point m_keptAt;
};

} // namespace zm::disc::player
