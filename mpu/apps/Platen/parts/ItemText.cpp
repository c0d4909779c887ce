#include "parts/ItemText.h"

#include "parts/WideText.h"
#include "zmui/CUIAnalysis.h"

void SetText(CUIAnalysis& ui, int window, int item, const std::string& text) {
    wchar_t wide[WIDE_TEXT_SIZE];
    FormatWide(wide, L"%s", text);
    ui.SetItemText(window, item, wide);
}
