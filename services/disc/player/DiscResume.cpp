#include "services/disc/player/DiscResume.h"

#include "services/disc/player/PlayOrder.h"

namespace zm::disc::player {

namespace {

constexpr std::chrono::seconds KeepInterval{5};

model::PlayModes modesOf(const ResumePoint& point) {
    model::PlayModes modes;
    modes.repeat = point.repeat;
    modes.shuffle = point.shuffle;
    return modes;
}

} // namespace

DiscResume::DiscResume(ResumeMemory& memory, std::shared_ptr<const model::Contents> contents)
    : m_memory(memory), m_contents(std::move(contents)), m_item{m_contents->firstKind(), 0} {
    const auto point = m_memory.find(m_contents->identity);
    const auto index =
        point ? findItem(*m_contents, point->kind, point->folderId, point->fileId) : std::nullopt;
    if (index && isRepeat(point->repeat) && isShuffle(point->shuffle)) {
        m_item = {point->kind, *index};
        m_position = point->position;
        m_modes = modesOf(*point);
    }
}

DiscResume::~DiscResume() {
    flush();
}

void DiscResume::moved(const ItemPlace& item, std::chrono::milliseconds position,
                       const model::PlayModes& modes) {
    const auto& played = m_contents->of(item.kind)[item.index];
    m_told = ResumePoint{item.kind, played.folderId, played.fileId, position, modes.repeat, modes.shuffle};
    auto kept = m_kept.value_or(ResumePoint{});
    kept.position = position;
    const bool onlyTime = m_kept && kept == *m_told;
    if (!onlyTime || std::chrono::steady_clock::now() - m_keptAt >= KeepInterval) {
        flush();
    }
}

void DiscResume::flush() {
    if (m_told && m_told != m_kept) {
        m_memory.keep(m_contents->identity, *m_told);
        m_kept = m_told;
        m_keptAt = std::chrono::steady_clock::now();
    }
}

} // namespace zm::disc::player
