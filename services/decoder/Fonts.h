#pragma once

namespace zm::decoder {

/** Opens the fonts that texts can be drawn with, for the time when no file can be opened any more. */
void openFonts();

/** The descriptor of the font file `path`; -1 if it is none. Safe in a signal's handler. */
int fontDescriptor(const char* path);

} // namespace zm::decoder
