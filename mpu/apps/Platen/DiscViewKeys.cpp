#include "DiscView.h"

#include "DiscOsdView.h"
#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/FindRow.h"

/** A hard key; every action may rely on the controller. */
struct DiscView::KeyRow {
    int code;
    bool restartsTimer; ///< of the way back to the play page
    const char* log;
    void (*action)(DiscView& view);
};

bool DiscView::OnKey(int, int, int) {
    return true;
}

bool DiscView::OnKeyboard(int nKey) {
    using View = DiscView&;
    static constexpr KeyRow ROWS[] = {
        {K_PLAY, false, nullptr, [](View view) { view.Send(&DiscViewController::Play); }},
        {K_PAUSE, false, nullptr, [](View view) { view.Send(&DiscViewController::Pause); }},
        {K_NEXT, true, "------OnKeyboard::K_NEXT\n",
         [](View view) {
             view.Send(&DiscViewController::NextClip);
             view.SetOsdKeyType(OSD_KEY_TYPE_NEXT);
             view.m_bSelPlayingRow = true;
         }},
        {K_PREV, true, "------OnKeyboard::K_PREV---------\n",
         [](View view) {
             view.Send(&DiscViewController::PreviousClip);
             view.SetOsdKeyType(OSD_KEY_TYPE_PREVIOUS);
             view.m_bSelPlayingRow = true;
         }},
        {K_FASTF, false, "------OnKeyboard::K_FASTF\n",
         [](View view) {
             view.Send(&DiscViewController::FastForward);
             view.SetOsdKeyType(OSD_KEY_TYPE_FORWARD);
         }},
        {K_FASTB, false, "------OnKeyboard::K_FASTB\n",
         [](View view) {
             view.Send(&DiscViewController::FastBackward);
             view.SetOsdKeyType(OSD_KEY_TYPE_BACKWARD);
         }},
        {K_GOTO, false, nullptr,
         [](View view) {
             if (!view.m_bNoFileOfType) {
                 view.ShowGotoView();
             }
         }},
        {K_Up, true, nullptr, [](View view) { view.OnKey_K_Up(); }},
        {K_Down, true, nullptr, [](View view) { view.OnKey_K_Down(); }},
        {K_Left, false, nullptr, [](View view) { view.OnKey_K_Left(); }},
        {K_Right, false, nullptr, [](View view) { view.OnKey_K_Right(); }},
        {K_Enter, true, nullptr, [](View view) { view.OnKey_K_Enter(); }},
        {K_Return, false, nullptr, [](View view) { view.OnKey_K_Return(); }},
        {K_PRESET_UP, true, "------OnKeyboard::K_PRESET_UP---------\n",
         [](View view) {
             // Two commands on purpose, against the one of the key below.
             view.Send(&DiscViewController::PreviousClip);
             view.Send(&DiscViewController::PreviousClip);
             view.m_bSelPlayingRow = true;
         }},
        {K_PRESET_DN, true, "------OnKeyboard::K_PRESET_DN\n",
         [](View view) {
             view.Send(&DiscViewController::NextClip);
             view.m_bSelPlayingRow = true;
         }},
        {K_ENCODER_INC, true, "------OnKeyboard::K_ENCODER_INC\n",
         [](View view) { view.OnKey_K_Encoder_Inc(); }},
        {K_ENCODER_DEC, true, "------OnKeyboard::K_ENCODER_DEC\n",
         [](View view) { view.OnKey_K_Encoder_Dec(); }},
        {K_SHUFFLE_FOLDER, false, nullptr,
         [](View view) {
             view.Send(&DiscViewController::SetShuffleMode, 1);
             view.Send(&DiscViewController::SetRepeatMode, 4);
         }},
        {K_REPEAT_ALL, false, nullptr, [](View view) { view.Send(&DiscViewController::SetRepeatMode, 2); }},
        {K_SHUFFLE, false, nullptr, [](View view) { view.Send(&DiscViewController::SetShuffleMode, 4); }},
        {K_RESTART, false, nullptr,
         [](View view) {
             view.Send(&DiscViewController::PlayTrack, CDiscData::GetInstance()->GetCurPlayInfo().curMediaId,
                       0);
         }},
    };
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnKeyboard]: nKey=%d\n", nKey);
    const KeyRow* row = m_pController ? FindRow(ROWS, &KeyRow::code, nKey) : nullptr;
    if (!row) {
        return false;
    }
    if (row->restartsTimer) {
        SetDisplayPlayViewTimer();
    }
    if (row->log) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", row->log);
    }
    row->action(*this);
    return true;
}

void DiscView::SetOsdKeyType(int keyType) {
    if (DiscOsdView* osd = Osd()) {
        osd->SetCurKeyType(keyType);
    }
}
