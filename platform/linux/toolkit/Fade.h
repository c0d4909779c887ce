#pragma once

#include "base/Rect.h"

#include <cstdint>
#include <vector>

namespace zm {

/**
 * Lets a part of a picture go over softly from what was seen to what is to be seen. It works on pixels alone: what the pages
 * are, and what touches reach, has changed already. One that is under way and gets another aim starts from what is
 * seen at that moment.
 */
class Fade {
public:
    /** What is painted next looks different in `area`: it is to fade over in `ms`. */
    void want(const Rect& area, int ms);
    /** The same, and what is seen now is nothing at all: the window was not on the screen. */
    void wantFromNothing(const Rect& area, int ms);
    /** Shows what is to be seen at the next `show`. */
    void finish();

    /** Whether there is something left to show. */
    bool active() const { return m_wanted || m_running; }
    /** Between `begin` and the `show` that ends it: new pixels belong into `settled`. */
    bool running() const { return m_running; }
    /** Starts what was wanted, if anything was: `pixels` are what is seen. */
    void begin(const uint8_t* pixels, int stride, const Rect& screen);
    /** The picture that is to be seen in the end, in the stride of `begin`. */
    uint8_t* settled() { return m_settled.data(); }
    const uint8_t* settled() const { return m_settled.data(); }

    void step(int64_t nowMs);
    /** Puts into `pixels` what is new of `painted` and what the step has changed; gives the areas. */
    std::vector<Rect> show(uint8_t* pixels, std::vector<Rect> painted);

private:
    void copy(uint8_t* pixels, const Rect& area) const;
    void mix(uint8_t* pixels, const Rect& area) const;

    bool m_wanted = false;
    bool m_running = false;
    bool m_stepped = false;
    bool m_fromNothing = false;
    Rect m_wantedArea;
    int m_wantedMs = 0;

    Rect m_screen;
    Rect m_area;
    int m_ms = 0;
    int m_stride = 0;
    int64_t m_start = -1;
    double m_done = 0; ///< 0..1, eased
    std::vector<uint8_t> m_before;
    std::vector<uint8_t> m_settled;
};

/** Quick at first and slow at the end; 0..1 for 0..1. */
double eased(double part);

} // namespace zm
