#pragma once

#include <string>

class CUIAnalysis;
class CUIWndMng;

inline constexpr int GOTO_WINDOW = 20; ///< the pad's page in both resources

/** Items of the pad's page; a digit's key is GOTO_KEY_1 + digit - 1, but 0 stands behind 9. */
enum : int {
    GOTO_KEY_CLOSE = 4,
    GOTO_ITEM_DISPLAY = 510,
    GOTO_KEY_1 = 511,
    GOTO_KEY_9 = 519,
    GOTO_KEY_0 = 520,
    GOTO_KEY_BACK = 523,
    GOTO_ITEM_MODE = 527,
    GOTO_KEY_OK = 531
};

/**
 * The track-number pad on page 20 of a view: what was typed, the upper bound, display and keys. Until it has
 * the view's widgets nothing is drawn. Event thread only.
 */
class NumberPad {
public:
    /** The view's widgets, once its resource has been loaded. */
    void TakeWidgets(CUIAnalysis* ui, CUIWndMng* wndMng) {
        m_pUIAnalysis = ui;
        m_pWndMng = wndMng;
    }

    /** Forgets the entry, takes `total` as bound and shows both with caption `captionTextId`. */
    void Begin(int total, int captionTextId);
    /** Replaces the bound, nothing is redrawn. */
    void SetTotal(int total);
    /** Forgets the entry and shows the bound alone. */
    void ClearEntry();
    /** Forgets the entry and empties the display. */
    void End();
    /** The number typed so far; 0 when nothing is. */
    int Number() const;
    /** Whether OK may confirm the entry under bound `total`. */
    bool IsConfirmable(int total) const { return Number() >= 1 && Number() <= total; }

    /** A digit or the back key. */
    static bool IsEntryKey(long ctrlId);
    /** Types that key; a digit that would exceed `total` changes nothing. */
    void PressEntryKey(long ctrlId, int total);

    /** Enables the digits that may follow within the bound, back and OK when there is an entry; redraws
     * everything. */
    void DealInputNum();

private:
    void PressDigit(int digit, int total);
    void PressBack();
    void ShowEntry();
    void DrawDisplay();

    CUIAnalysis* m_pUIAnalysis = nullptr;
    CUIWndMng* m_pWndMng = nullptr;
    std::string m_strInputNum; ///< digits typed
    std::string m_strTotalNum; ///< the upper bound
};
