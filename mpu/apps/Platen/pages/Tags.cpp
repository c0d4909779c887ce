#include "pages/Tags.h"

#include "DiscViewItems.h"
#include "Log.h"
#include "ZMModel/DiscRecords.h"
#include "parts/ItemText.h"
#include "zmui/CUIAnalysis.h"

namespace {

constexpr int LIST_PAGES[] = {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST};

/** The function that log lines about tags name. */
constexpr const char* FUNC = "OnUserMsgID3";

/** A tag that is shown for every disc, and what is logged before and after setting it. */
struct TagRow {
    int item;
    std::string T_ID3_INFO::*text;
    const char* log;
    const char* endLog;
    const char* emptyLog;
    const char* unknown;
};

constexpr TagRow TAGS[] = {
    {ITEM_ARTIST, &T_ID3_INFO::artist, "[DiscView::OnUserMsgID3]artist\n",
     "[DiscView::OnUserMsgID3]artist SetItemText end\n", "[DiscView::OnUserMsgID3] artist empty\n",
     "unknown artist"},
    {ITEM_ALBUM, &T_ID3_INFO::album, "[DiscView::OnUserMsgID3]album\n",
     "[DiscView::OnUserMsgID3]album SetItemText end\n", "[DiscView::OnUserMsgID3] album empty\n",
     "unknown album"},
};

std::string Known(const std::string& text, const char* unknown) {
    return text.empty() ? unknown : text;
}

void ShowTag(CUIAnalysis& ui, const TagRow& tag, const std::string& text) {
    LOGBASE(LOG_LEV_TRACE, FUNC, "%s", text.empty() ? tag.emptyLog : tag.log);
    SetText(ui, WND_AUDIO_PLAY, tag.item, Known(text, tag.unknown));
    if (!text.empty()) {
        LOGBASE(LOG_LEV_TRACE, FUNC, "%s", tag.endLog);
    }
}

} // namespace

void ShowTags(CUIAnalysis& ui, const T_ID3_INFO& info, bool withTitle) {
    LOGBASE(LOG_LEV_TRACE, FUNC, "[DiscView::OnUserMsgID3] title=%s,artist=%s,album=%s\n", info.title.c_str(),
            info.artist.c_str(), info.album.c_str());
    if (withTitle) {
        const std::string title = Known(info.title, UNKNOWN_TITLE);
        SetText(ui, WND_AUDIO_PLAY, ITEM_TITLE, title);
        for (const int page : LIST_PAGES) {
            SetText(ui, page, ITEM_TO_PLAYING, title);
        }
    }
    for (const TagRow& tag : TAGS) {
        ShowTag(ui, tag, info.*tag.text);
    }
    for (const int item : {ITEM_TITLE, ITEM_ARTIST, ITEM_ALBUM}) {
        ui.drawItem(WND_AUDIO_PLAY, item);
    }
    for (const int page : LIST_PAGES) {
        ui.drawItem(page, ITEM_TO_PLAYING);
    }
    LOGBASE(LOG_LEV_TRACE, FUNC, "[DiscView::OnUserMsgID3] end\n");
}
