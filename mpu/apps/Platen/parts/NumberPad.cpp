#include "parts/NumberPad.h"

#include "Log.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>

namespace {

constexpr int DIGITS = 10;

int DigitOf(long key) {
    return key == GOTO_KEY_0 ? 0 : static_cast<int>(key) - GOTO_KEY_1 + 1;
}

int KeyOf(int digit) {
    return digit == 0 ? GOTO_KEY_0 : GOTO_KEY_1 + digit - 1;
}

/** The number that `digit` typed behind `number` would make; wide, as the entry may come near the largest
 * integer. */
int64_t Append(int number, int digit) {
    return int64_t{number} * DIGITS + digit;
}

} // namespace

void NumberPad::Begin(int total, int captionTextId) {
    SetTotal(total);
    ClearEntry();
    if (m_pUIAnalysis) {
        m_pUIAnalysis->SetItemText(GOTO_WINDOW, GOTO_ITEM_MODE, captionTextId);
    }
}

void NumberPad::SetTotal(int total) {
    m_strTotalNum = std::to_string(total);
}

void NumberPad::ClearEntry() {
    m_strInputNum.clear();
    ShowEntry();
}

void NumberPad::End() {
    m_strInputNum.clear();
    if (m_pUIAnalysis) {
        m_pUIAnalysis->SetItemText(GOTO_WINDOW, GOTO_ITEM_DISPLAY, L"");
    }
}

void NumberPad::DrawDisplay() {
    if (m_pUIAnalysis) {
        m_pUIAnalysis->drawItem(GOTO_WINDOW, GOTO_ITEM_DISPLAY);
    }
}

int NumberPad::Number() const {
    return std::atoi(m_strInputNum.c_str());
}

bool NumberPad::IsEntryKey(long ctrlId) {
    return (ctrlId >= GOTO_KEY_1 && ctrlId <= GOTO_KEY_0) || ctrlId == GOTO_KEY_BACK;
}

void NumberPad::PressEntryKey(long ctrlId, int total) {
    if (ctrlId == GOTO_KEY_BACK) {
        PressBack();
    } else {
        PressDigit(DigitOf(ctrlId), total);
    }
}

void NumberPad::PressDigit(int digit, int total) {
    const int64_t candidate = Append(Number(), digit);
    if (candidate <= total) {
        // A fresh decimal text: the entry never keeps a leading zero.
        std::ostringstream text;
        text << candidate;
        m_strInputNum = text.str();
        ShowEntry();
        DrawDisplay();
    }
    DealInputNum();
}

void NumberPad::PressBack() {
    if (m_strInputNum.empty()) {
        return;
    }
    m_strInputNum.pop_back();
    ShowEntry();
    DrawDisplay();
    DealInputNum();
}

void NumberPad::ShowEntry() {
    if (!m_pUIAnalysis) {
        return;
    }
    const std::string shown = (m_strInputNum.empty() ? "_" : m_strInputNum) + "/" + m_strTotalNum;
    // Digits, "_" and "/" only: the characters are the same in the wide text.
    const std::wstring wide(shown.begin(), shown.end());
    m_pUIAnalysis->SetItemText(GOTO_WINDOW, GOTO_ITEM_DISPLAY, wide.c_str());
}

void NumberPad::DealInputNum() {
    if (!m_pUIAnalysis || !m_pWndMng) {
        return;
    }
    const int number = Number();
    const int total = std::atoi(m_strTotalNum.c_str());
    // The main view's pad writes these lines under the overlay's name, too.
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::DealInputNum] nInputNum=%d\n", number);
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::DealInputNum] totalNum=%d\n", total);
    for (int digit = 0; digit < DIGITS; ++digit) {
        const int64_t candidate = Append(number, digit);
        m_pUIAnalysis->EnableItem(GOTO_WINDOW, KeyOf(digit), candidate >= 1 && candidate <= total);
    }
    m_pUIAnalysis->EnableItem(GOTO_WINDOW, GOTO_KEY_BACK, number != 0);
    m_pUIAnalysis->EnableItem(GOTO_WINDOW, GOTO_KEY_OK, number != 0);
    m_pWndMng->drawAllItem();
}
