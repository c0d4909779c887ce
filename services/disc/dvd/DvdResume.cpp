#include "services/disc/dvd/DvdResume.h"

#include "services/disc/player/PlayOrder.h"

namespace zm::disc::dvd {

DvdResume::DvdResume(player::ResumeMemory& memory, const std::string& identity) : m_keeper(memory, identity) {
    const auto point = m_keeper.left();
    if (!point || !player::isRepeat(point->repeat) || !player::isShuffle(point->shuffle)) {
        return;
    }
    m_modes = model::PlayModes{};
    m_modes->repeat = point->repeat;
    m_modes->shuffle = point->shuffle;
    if (point->folderId > 0 && point->fileId > 0) {
        m_place = DvdPlace{point->folderId, point->fileId, point->position, point->sound, point->subtitle};
    }
}

void DvdResume::shows(const Scene& scene, const model::PlayModes& modes) {
    if (scene.title == 0) {
        if (!m_menuCalled) {
            beginsAnew(modes);
        }
        return;
    }
    m_menuCalled = false;
    m_keeper.moved({model::MediaKind::Video, scene.title, scene.chapter, scene.position, modes.repeat,
                    modes.shuffle, scene.sound, scene.subtitle < 0 ? zm::dvd::NoSubtitle : scene.subtitle});
}

void DvdResume::beginsAnew(const model::PlayModes& modes) {
    m_keeper.moved({model::MediaKind::Video, 0, 0, engine::Milliseconds{0}, modes.repeat, modes.shuffle});
    m_keeper.flush();
}

} // namespace zm::disc::dvd
