#include "pages/PlayModes.h"

#include "DiscViewIds.h"
#include "DiscViewItems.h"
#include "zmui/CUIAnalysis.h"

namespace {

/** A play mode, as the player numbers it, and the picture of its button. */
struct ModeRow {
    int item;
    int mode;
    int icon;
};

constexpr ModeRow MODES[] = {
    {ITEM_REPEAT, 1, ICON_REPEAT_OFF},      {ITEM_REPEAT, 2, ICON_REPEAT_ALL},
    {ITEM_REPEAT, 4, ICON_REPEAT_FOLDER},   {ITEM_REPEAT, 8, ICON_REPEAT_ONE},
    {ITEM_SHUFFLE, 0, ICON_SHUFFLE_OFF},    {ITEM_SHUFFLE, 1, ICON_SHUFFLE_ALL},
    {ITEM_SHUFFLE, 2, ICON_SHUFFLE_FOLDER},
};

void SetModeIcons(CUIAnalysis& ui, int item, int mode) {
    for (const ModeRow& row : MODES) {
        if (row.item == item && row.mode == mode) {
            ui.SetItemIcon(WND_AUDIO_PLAY, item, row.icon, ITEM_STATE_NORMAL);
            ui.SetItemIcon(WND_AUDIO_PLAY, item, row.icon, ITEM_STATE_SELECTED);
            ui.SetItemIcon(WND_AUDIO_PLAY, item, row.icon + 1, ITEM_STATE_PRESSED);
        }
    }
}

} // namespace

void ShowPlayModes(CUIAnalysis& ui, int repeat, int shuffle) {
    SetModeIcons(ui, ITEM_REPEAT, repeat);
    SetModeIcons(ui, ITEM_SHUFFLE, shuffle);
    ui.drawItem(WND_AUDIO_PLAY, ITEM_REPEAT);
    ui.drawItem(WND_AUDIO_PLAY, ITEM_SHUFFLE);
}
