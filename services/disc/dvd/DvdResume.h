#pragma once

#include "services/disc/dvd/Listener.h"
#include "services/disc/model/DiscState.h"
#include "services/disc/player/ResumeKeeper.h"

#include <optional>
#include <string>

namespace zm::disc::dvd {

/** Where a DVD is to go on, and how far it has come since. On the service's loop. */
class DvdResume {
public:
    DvdResume(player::ResumeMemory& memory, const std::string& identity);

    /** Nothing for a disc that is new or begins anew. */
    std::optional<DvdPlace> place() const { return m_place; }
    /** The disc's own modes; nothing when it is new. */
    std::optional<model::PlayModes> modes() const { return m_modes; }

    /** Called often. A menu to which the disc itself has come is its end. */
    void shows(const Scene& scene, const model::PlayModes& modes);
    /** The menus until the next title are the user's look aside, who wants back to the film. */
    void menuCalled() { m_menuCalled = true; }
    /** The next time it begins as a new disc. */
    void beginsAnew(const model::PlayModes& modes);
    void flush() { m_keeper.flush(); }

private:
    player::ResumeKeeper m_keeper;
    std::optional<DvdPlace> m_place;
    std::optional<model::PlayModes> m_modes;
    bool m_menuCalled = false;
};

} // namespace zm::disc::dvd
