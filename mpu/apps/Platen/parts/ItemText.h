#pragma once

#include <string>

class CUIAnalysis;

/** What stands for the title of an item that has none. */
inline constexpr char UNKNOWN_TITLE[] = "unknown title";

/** Sets the text of an item; draws nothing. */
void SetText(CUIAnalysis& ui, int window, int item, const std::string& text);
