#include "DiscOsdView.h"

#include "Log.h"
#include "WideText.h"
#include "ZMModel/CDiscData.h"
#include "zmui/CUIAnalysis.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int DISC_HIGHEST = 99; ///< a disc's counters have two digits
constexpr int SECONDS_A_MINUTE = 60;
constexpr int SECONDS_AN_HOUR = 3600;
constexpr int REPEAT_FOLDER = 4;

enum class CounterRule {
    TwoDigits, ///< numbers beyond 99 count as unknown
    Unbounded
};

struct CounterRow {
    int clipType;
    int item;
    int T_MPEG_MEDIA_INFO::*current;
    int T_MPEG_MEDIA_INFO::*count;
    CounterRule rule;
};

constexpr CounterRow COUNTERS[] = {
    {PLAY_TYPE_DVD, OSD_ITEM_TRACK, &T_MPEG_MEDIA_INFO::title, &T_MPEG_MEDIA_INFO::titles,
     CounterRule::TwoDigits},
    {PLAY_TYPE_DVD, OSD_ITEM_CHAPTER, &T_MPEG_MEDIA_INFO::chapter, &T_MPEG_MEDIA_INFO::chapters,
     CounterRule::TwoDigits},
    {PLAY_TYPE_VIDEO, OSD_ITEM_TRACK, &T_MPEG_MEDIA_INFO::curMediaId, &T_MPEG_MEDIA_INFO::curMediaIds,
     CounterRule::Unbounded},
    {PLAY_TYPE_PHOTO, OSD_ITEM_TRACK, &T_MPEG_MEDIA_INFO::mediaId, &T_MPEG_MEDIA_INFO::mediaIds,
     CounterRule::Unbounded},
    {PLAY_TYPE_VCD, OSD_ITEM_TRACK, &T_MPEG_MEDIA_INFO::mediaId, &T_MPEG_MEDIA_INFO::mediaIds,
     CounterRule::TwoDigits},
};

enum class Counter { Unknown, CountOnly, Both };

Counter Judge(int current, int count, CounterRule rule) {
    const bool twoDigits = rule == CounterRule::TwoDigits;
    if (count < 1 || (twoDigits && (count > DISC_HIGHEST || current < 0 || current > DISC_HIGHEST))) {
        return Counter::Unknown;
    }
    return current < 1 ? Counter::CountOnly : Counter::Both;
}

void ShowNumbers(CUIAnalysis& ui, int window, int item, Counter shown, int current, int count) {
    wchar_t text[WIDE_TEXT_SIZE] = L"--/--";
    if (shown == Counter::Both) {
        FormatWide(text, L"%d/%d", current, count);
    } else if (shown == Counter::CountOnly) {
        FormatWide(text, L"--/%d", count);
    }
    ui.SetItemText(window, item, text);
    ui.drawItem(window, item);
}

void SetTimeText(CUIAnalysis& ui, int window, int item, int seconds) {
    wchar_t text[WIDE_TEXT_SIZE];
    const int minutes = seconds / SECONDS_A_MINUTE % SECONDS_A_MINUTE;
    if (seconds >= SECONDS_AN_HOUR) {
        FormatWide(text, L"%02d:%02d:%02d", seconds / SECONDS_AN_HOUR, minutes, seconds % SECONDS_A_MINUTE);
    } else {
        FormatWide(text, L"%02d:%02d", minutes, seconds % SECONDS_A_MINUTE);
    }
    ui.SetItemText(window, item, text);
}

/**
 * The integer part of elapsed / total * 100 in single precision, with what the target's conversion makes of a
 * total of zero: nothing elapsed gives 0, anything else the largest integer (the bar is limited to its
 * range).
 */
int Percentage(int elapsed, int total) {
    constexpr int LARGEST = std::numeric_limits<int>::max();
    if (total == 0) {
        return elapsed == 0 ? 0 : LARGEST;
    }
    const float percentage = static_cast<float>(elapsed) / static_cast<float>(total) * 100.0F;
    return static_cast<int>(std::clamp<double>(percentage, std::numeric_limits<int>::min(), LARGEST));
}

} // namespace

void DiscOsdView::OnUserMsgTrackInfo() {
    if (!m_pUIAnalysis) {
        return;
    }
    const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
    if (IsClip({PLAY_TYPE_DVD})) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgTrackInfo]t:%d/%d  c:%d/%d\n",
                info.title, info.titles, info.chapter, info.chapters);
    } else if (IsClip({PLAY_TYPE_VCD})) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgTrackInfo]----  track:%d/%d\n",
                info.mediaId, info.mediaIds);
    }
    for (const CounterRow& row : COUNTERS) {
        if (IsClip({row.clipType})) {
            const int current = info.*row.current;
            const int count = info.*row.count;
            ShowNumbers(*m_pUIAnalysis, m_nCurWndId, row.item, Judge(current, count, row.rule), current,
                        count);
        }
    }
}

void DiscOsdView::ShowFileCounter() {
    if (m_pUIAnalysis) {
        const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
        const Counter shown = Judge(info.curMediaId, info.curMediaIds, CounterRule::Unbounded);
        ShowNumbers(*m_pUIAnalysis, m_nCurWndId, OSD_ITEM_TRACK, shown, info.curMediaId, info.curMediaIds);
    }
}

void DiscOsdView::ShowCurTrack(int index) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::ShowCurTrack]  index=%d\n", index);
    if (!m_pUIAnalysis || CDiscData::GetInstance()->GetCurPlayStatus().repeat == REPEAT_FOLDER) {
        return;
    }
    const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
    // Without an index the file number decides whether the count alone is shown.
    Counter shown = Counter::Unknown;
    if (info.mediaIds >= 1 && index >= 1) {
        shown = Counter::Both;
    } else if (info.mediaIds >= 1 && info.curMediaId < 1) {
        shown = Counter::CountOnly;
    }
    ShowNumbers(*m_pUIAnalysis, m_nCurWndId, OSD_ITEM_TRACK, shown, index, info.mediaIds);
}

void DiscOsdView::OnUserMsgPlayTime() {
    if (!m_pUIAnalysis || !IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD, PLAY_TYPE_VIDEO})) {
        return;
    }
    const T_PLAYTIME_INFO playTime = CDiscData::GetInstance()->GetPlayTime();
    SetTimeText(*m_pUIAnalysis, m_nCurWndId, OSD_ITEM_ELAPSED, playTime.time);
    SetTimeText(*m_pUIAnalysis, m_nCurWndId, OSD_ITEM_TOTAL, playTime.trackTime);
    m_pUIAnalysis->SetProgressItemPos(m_nCurWndId, OSD_ITEM_PROGRESS,
                                      Percentage(playTime.time, playTime.trackTime));
    m_pUIAnalysis->drawItem(m_nCurWndId, OSD_ITEM_ELAPSED);
    m_pUIAnalysis->drawItem(m_nCurWndId, OSD_ITEM_PROGRESS);
    m_pUIAnalysis->drawItem(m_nCurWndId, OSD_ITEM_TOTAL);
}
