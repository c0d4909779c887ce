#pragma once

class CUIAnalysis;

/** Shows and draws the pictures of the play page's repeat and shuffle buttons; unknown modes leave them. */
void ShowPlayModes(CUIAnalysis& ui, int repeat, int shuffle);
