#pragma once

#include "tests/pictures/Stage.h"

#include <ostream>
#include <span>

namespace zm::test {

/** A page or an overlay window with one kind of contents. */
struct PictureRow {
    const char* name;
    int window;  ///< of the main view
    int overlay; ///< window of the overlay; 0: it is hidden
    void (*steps)(Stage& stage);
    const char* also = nullptr; ///< a third language, where its texts are the ones to look at
    bool contrast = false;      ///< also in the theme of high contrast
};

/** For the test's messages. */
inline void PrintTo(const PictureRow& row, std::ostream* stream) {
    *stream << row.name;
}

/** Rows of the main view's pages. */
std::span<const PictureRow> pageRows();
/** Rows of the overlay's windows. */
std::span<const PictureRow> overlayRows();

} // namespace zm::test
