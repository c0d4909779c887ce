#include "input/HardKeys.h"

#include "DiscViewController.h"
#include "DiscViewIds.h"
#include "FindRow.h"
#include "Log.h"
#include "input/DirectionKeys.h"
#include "input/GotoPage.h"
#include "lists/ListState.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"
#include "video/OverlayWindow.h"

/** A hard key; every action may rely on the controller. */
struct HardKeys::KeyRow {
    int code;
    bool restartsTimer; ///< the one back to the play page
    const char* log;
    void (*action)(HardKeys& keys);
};

bool HardKeys::OnKeyboard(int nKey) {
    using Keys = HardKeys&;
    static constexpr KeyRow ROWS[] = {
        {K_PLAY, false, nullptr, [](Keys keys) { keys.m_control.Send(&DiscViewController::Play); }},
        {K_PAUSE, false, nullptr, [](Keys keys) { keys.m_control.Send(&DiscViewController::Pause); }},
        {K_NEXT, true, "------OnKeyboard::K_NEXT\n",
         [](Keys keys) {
             keys.m_control.Send(&DiscViewController::NextClip);
             keys.m_overlay.SetOsdKeyType(OSD_KEY_TYPE_NEXT);
             keys.m_lists.m_bSelPlayingRow = true;
         }},
        {K_PREV, true, "------OnKeyboard::K_PREV---------\n",
         [](Keys keys) {
             keys.m_control.Send(&DiscViewController::PreviousClip);
             keys.m_overlay.SetOsdKeyType(OSD_KEY_TYPE_PREVIOUS);
             keys.m_lists.m_bSelPlayingRow = true;
         }},
        {K_FASTF, false, "------OnKeyboard::K_FASTF\n",
         [](Keys keys) {
             keys.m_control.Send(&DiscViewController::FastForward);
             keys.m_overlay.SetOsdKeyType(OSD_KEY_TYPE_FORWARD);
         }},
        {K_FASTB, false, "------OnKeyboard::K_FASTB\n",
         [](Keys keys) {
             keys.m_control.Send(&DiscViewController::FastBackward);
             keys.m_overlay.SetOsdKeyType(OSD_KEY_TYPE_BACKWARD);
         }},
        {K_GOTO, false, nullptr,
         [](Keys keys) {
             if (!keys.m_state.m_bNoFileOfType) {
                 keys.m_gotoPage.ShowGotoView();
             }
         }},
        {K_Up, true, nullptr, [](Keys keys) { keys.m_directions.OnKey_K_Up(); }},
        {K_Down, true, nullptr, [](Keys keys) { keys.m_directions.OnKey_K_Down(); }},
        {K_Left, false, nullptr, [](Keys keys) { keys.m_directions.OnKey_K_Left(); }},
        {K_Right, false, nullptr, [](Keys keys) { keys.m_directions.OnKey_K_Right(); }},
        {K_Enter, true, nullptr, [](Keys keys) { keys.m_directions.OnKey_K_Enter(); }},
        {K_Return, false, nullptr, [](Keys keys) { keys.m_directions.OnKey_K_Return(); }},
        {K_PRESET_UP, true, "------OnKeyboard::K_PRESET_UP---------\n",
         [](Keys keys) {
             // Two commands on purpose, against the one of the key below.
             keys.m_control.Send(&DiscViewController::PreviousClip);
             keys.m_control.Send(&DiscViewController::PreviousClip);
             keys.m_lists.m_bSelPlayingRow = true;
         }},
        {K_PRESET_DN, true, "------OnKeyboard::K_PRESET_DN\n",
         [](Keys keys) {
             keys.m_control.Send(&DiscViewController::NextClip);
             keys.m_lists.m_bSelPlayingRow = true;
         }},
        {K_ENCODER_INC, true, "------OnKeyboard::K_ENCODER_INC\n",
         [](Keys keys) { keys.m_directions.OnKey_K_Encoder_Inc(); }},
        {K_ENCODER_DEC, true, "------OnKeyboard::K_ENCODER_DEC\n",
         [](Keys keys) { keys.m_directions.OnKey_K_Encoder_Dec(); }},
        {K_SHUFFLE_FOLDER, false, nullptr,
         [](Keys keys) {
             keys.m_control.Send(&DiscViewController::SetShuffleMode, 1);
             keys.m_control.Send(&DiscViewController::SetRepeatMode, 4);
         }},
        {K_REPEAT_ALL, false, nullptr,
         [](Keys keys) { keys.m_control.Send(&DiscViewController::SetRepeatMode, 2); }},
        {K_SHUFFLE, false, nullptr,
         [](Keys keys) { keys.m_control.Send(&DiscViewController::SetShuffleMode, 4); }},
        {K_RESTART, false, nullptr,
         [](Keys keys) {
             keys.m_control.Send(&DiscViewController::PlayTrack, keys.m_data.GetCurPlayInfo().curMediaId, 0);
         }},
    };
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnKeyboard]: nKey=%d\n", nKey);
    const KeyRow* row = m_control.Controller() ? FindRow(ROWS, &KeyRow::code, nKey) : nullptr;
    if (!row) {
        return false;
    }
    if (row->restartsTimer) {
        m_control.SetDisplayPlayViewTimer();
    }
    if (row->log) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", row->log);
    }
    row->action(*this);
    return true;
}
