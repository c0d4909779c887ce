#pragma once

/** Where the last touch on the screen began and ended, in pixels. */
struct TouchPoints {
    struct Point {
        int x = 0;
        int y = 0;
    };
    Point m_ptLButtonUp;
    Point m_ptLButtonDown;
};
