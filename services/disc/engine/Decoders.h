#pragma once

namespace zm::disc::engine {

/**
 * Starts GStreamer with the elements of a fixed list and no others: what a file's bytes ask for can then
 * neither reach the network or other files nor open a window. Any number of times.
 */
void initDecoders();

/** Structure of the element message that tells of an error that a decoder's bin may keep to itself. */
inline constexpr const char* KeptErrorName = "zm-kept-error";
inline constexpr const char* KeptErrorText = "text";

} // namespace zm::disc::engine
