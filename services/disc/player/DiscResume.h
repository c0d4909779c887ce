#pragma once

#include "services/disc/model/DiscState.h"
#include "services/disc/player/ResumeKeeper.h"
#include "services/disc/player/TrackAddress.h"

namespace zm::disc::player {

/** Where the disc in the drive is to go on, and how far it has come since. On the service's loop. */
class DiscResume {
public:
    DiscResume(ResumeMemory& memory, std::shared_ptr<const model::Contents> contents);
    /** The item to begin with, of contents with at least one: the first when the disc is new. */
    ItemPlace item() const { return m_item; }
    std::chrono::milliseconds position() const { return m_position; }
    /** The disc's own modes; nothing when it is new. */
    std::optional<model::PlayModes> modes() const { return m_modes; }

    /** Called often while the disc plays: what is kept is a few seconds old at most. */
    void moved(const ItemPlace& item, std::chrono::milliseconds position, const model::PlayModes& modes);
    /** Keeps what it was told last, at once. */
    void flush() { m_keeper.flush(); }

private:
    ResumeKeeper m_keeper;
    std::shared_ptr<const model::Contents> m_contents;
    ItemPlace m_item;
    std::chrono::milliseconds m_position{0};
    std::optional<model::PlayModes> m_modes;
};

} // namespace zm::disc::player
