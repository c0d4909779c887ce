#pragma once

#include "base/Rect.h"
#include "services/bench/screen/Surface.h"
#include "services/bench/screen/SurfaceBlend.h"

#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zm::bench::screen {

/** Where and how a window is shown: what its owner or the application sets. */
struct SurfacePlacement {
    Rect rect;
    int order = 0;
    bool visible = false;
    bool alpha = false;
};

/** One window of a client: its memory and the buffer that is shown. */
struct SurfaceWindow {
    int client = 0;
    int number = 0;
    std::string name;
    Surface surface;
    SurfacePlacement placement;
    bool decoder = false; ///< shown only inside a child window
    int buffer = -1;      ///< -1 before the first frame
    int64_t sequence = 0;
    std::vector<bool> drawnRows; ///< since the latest commit; the others are all clear
};

/** A child window of the application's group, which shows the decoder's pictures. */
struct SurfaceChild {
    std::string name;
    unsigned number = 0;
    SurfacePlacement placement;
    const SurfaceWindow* picture = nullptr; ///< null: black
    uint64_t frames = 0;
};

/** All windows on the screen, and which parts of the screen have changed. */
class SurfaceScene {
public:
    /** Numbers of children begin here; clients number their windows below. */
    static constexpr int FirstChild = 0x40000000;

    SurfaceDamage damage;

    SurfaceWindow* find(int client, int number);
    SurfaceWindow& add(SurfaceWindow window);
    void remove(int client, int number);
    void removeClient(int client);
    size_t countOf(int client) const;

    /** Shows `buffer` from now on; gives back the one that it replaces.
     * `changed` is in pixels of the window. */
    std::optional<std::pair<int, int64_t>> commit(SurfaceWindow& window, int buffer, int64_t sequence,
                                                  const std::vector<Rect>& changed);
    /** Changes a placement; the old and the new place become damage. */
    void place(SurfacePlacement& current, const SurfacePlacement& wanted);

    SurfaceChild* findChild(const std::string& name);
    SurfaceChild* findChild(unsigned number);
    SurfaceChild* latestChild() { return m_children.empty() ? nullptr : &m_children.back(); }
    SurfaceChild& addChild(const std::string& name, const Rect& rect);
    bool removeChild(const std::string& name);
    /** Nobody places the children any more. */
    void hideChildren();

    /** Locked children are not drawn, wherever and however they are placed. */
    void lockChildren(bool locked);
    bool childrenLocked() const { return m_childrenLocked; }

    /** What is to be drawn, lowest first: the children, then the windows; later ones of equal order above. */
    std::vector<SurfaceLayer> layers() const;

private:
    void damageWindow(const SurfaceWindow& window, const std::vector<Rect>& changed);
    static void findDrawnRows(SurfaceWindow& window, const std::vector<Rect>& changed);
    void forgetPicture(const SurfaceWindow& window);
    bool shows(const SurfaceChild& child) const { return child.placement.visible && !m_childrenLocked; }

    std::list<SurfaceWindow> m_windows;
    std::list<SurfaceChild> m_children;
    unsigned m_nextChild = FirstChild;
    bool m_childrenLocked = false;
};

} // namespace zm::bench::screen
