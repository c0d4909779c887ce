#include "services/disc/player/DiscResume.h"

#include "services/disc/player/PlayOrder.h"

namespace zm::disc::player {

namespace {

model::PlayModes modesOf(const ResumePoint& point) {
    model::PlayModes modes;
    modes.repeat = point.repeat;
    modes.shuffle = point.shuffle;
    return modes;
}

} // namespace

DiscResume::DiscResume(ResumeMemory& memory, std::shared_ptr<const model::Contents> contents)
    : m_keeper(memory, contents->identity),
      m_contents(std::move(contents)), m_item{m_contents->firstKind(), 0} {
    const auto point = m_keeper.left();
    const auto index =
        point ? findItem(*m_contents, point->kind, point->folderId, point->fileId) : std::nullopt;
    if (index && isRepeat(point->repeat) && isShuffle(point->shuffle)) {
        m_item = {point->kind, *index};
        m_position = point->position;
        m_modes = modesOf(*point);
    }
}

void DiscResume::moved(const ItemPlace& item, std::chrono::milliseconds position,
                       const model::PlayModes& modes) {
    const auto& played = m_contents->of(item.kind)[item.index];
    m_keeper.moved({item.kind, played.folderId, played.fileId, position, modes.repeat, modes.shuffle});
}

} // namespace zm::disc::player
