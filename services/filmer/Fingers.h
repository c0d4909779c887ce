#pragma once

#include "services/film/SharedScreen.h"

namespace zm::filmer {

/** Draws the fingers that are on the screen at that moment, or were shortly before. */
void drawFingers(Image& frame, const film::SharedScreen::Fingers& fingers, film::Moment moment);

} // namespace zm::filmer
