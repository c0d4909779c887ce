#pragma once

#include "DiscViewIds.h"
#include "lists/MediaTypes.h"
#include "tests/views/MainView.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"
#include "zmui/CUI_BtList.h"

namespace zm::test {

/** The list pages over a disc of which something plays. */
class ListView : public MainView {
protected:
    using MainView::MainView;

    /** Music plays; its list is on screen and filled. */
    void listMusic() {
        play(PLAY_TYPE_MUSIC);
        openList();
    }
    /** Fills, and shows what a query that was just sent brought. */
    void tick() { unit.advance(50ms); }

    Item list(int page = WND_MEDIA_LIST) { return unit.main.item(page, ITEM_LIST); }
    Item tip(int page = WND_MEDIA_LIST) { return unit.main.item(page, ITEM_LIST_TIP); }
    /** Positions, from 1, of the rows that are marked as playing. */
    std::vector<int> marked(int page = WND_MEDIA_LIST) {
        std::vector<int> positions;
        const Item shown = list(page);
        for (size_t i = 0; i < shown.rows.size(); ++i) {
            if (shown.rows[i].icon(ROW_SLOT_PLAYING) == ICON_ROW_PLAYING) {
                positions.push_back(static_cast<int>(i) + 1);
            }
        }
        return positions;
    }
    void onList(int page, const std::function<void(CUI_BtList&)>& task) {
        unit.onViewThread([&] {
            CUI_BtList* control = nullptr;
            unit.view().GetUIWndMgrWrapper()->GetUIAnalysisObj()->GetItemData(page, ITEM_LIST, control);
            ASSERT_NE(control, nullptr);
            task(*control);
        });
    }
    /** Touches a row (from 0) with `top` as the first row in view. */
    void clickRow(int row, int page = WND_MEDIA_LIST, int top = 0) {
        onList(page, [&](CUI_BtList& control) {
            control.SetCurSel(row, 0);
            control.SetTopIndex(top, 1, 0, 0, 0);
        });
        unit.click(page, ITEM_LIST, BT_STATE_RELEASED);
    }
    /** Whether a track report for that file also selects its row, as it does once after the list was asked to
     * follow what plays. */
    bool follows(int file, int page = WND_MEDIA_LIST) {
        const int before = list(page).current;
        EXPECT_NE(before, file - 1) << "selected already";
        unit.disc.track({.curMediaId = file, .curMediaIds = 12, .mediaIds = 12, .parentFolder = 1});
        return list(page).current == file - 1;
    }
    void press(int control, int page = WND_MEDIA_LIST) { unit.click(page, control, BT_STATE_RELEASED); }
    void forget() {
        unit.clearCommands();
        unit.clearRequests();
    }
    /** Whether a line with that text was logged since the last call for it. */
    bool loggedAgain(const std::string& text) {
        const size_t count = unit.log(text).size();
        const bool again = count > m_logged[text];
        m_logged[text] = count;
        return again;
    }

private:
    std::map<std::string, size_t> m_logged;
};

} // namespace zm::test
