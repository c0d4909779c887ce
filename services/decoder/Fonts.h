#pragma once

namespace zm::decoder {

/** Opens the fonts for texts in advance: once the process is jailed no file can be opened. */
void openFonts();

/** The descriptor of the font file `path`; -1 if that is not one. Safe in a signal handler. */
int fontDescriptor(const char* path);

} // namespace zm::decoder
