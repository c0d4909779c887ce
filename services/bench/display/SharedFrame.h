#pragma once

#include "base/Image.h"
#include "base/Mutex.h"
#include "base/Rect.h"

#include <functional>

namespace zm::bench::display {

/** The composed frame on its way from the bench's loop to the thread of the window. Each method from any thread. */
class SharedFrame {
public:
    SharedFrame(int width, int height) : m_frame(width, height) {}

    /** Takes over what lies inside `damage`; true if nothing was waiting to be shown before. */
    bool put(const Image& frame, Rect damage);
    /** Hands what has changed since the last call to `show`, which may look at the frame until it returns; the area is empty if
     * nothing has. */
    void take(const std::function<void(const Image& frame, Rect damage)>& show);

private:
    Mutex m_mutex;
    Image m_frame ZM_GUARDED_BY(m_mutex);
    Rect m_damage ZM_GUARDED_BY(m_mutex);
};

} // namespace zm::bench::display
