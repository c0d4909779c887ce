#pragma once

class CUIAnalysis;
struct T_ID3_INFO;

/** Shows and draws artist and album on the play page and, `withTitle`, the title there and on the lists. */
void ShowTags(CUIAnalysis& ui, const T_ID3_INFO& info, bool withTitle);
