#include "parts/SourceGroup.h"

#include "FindRow.h"
#include "zmcar/PublicController.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"

namespace {

struct SourceRow {
    long control;
    const char* application;
};

constexpr SourceRow SOURCES[] = {
    {SRC_CTRL_RADIO, "zmradio"},     {SRC_CTRL_USB, "zmusb"}, {SRC_CTRL_BTTEL, "zmbttel"},
    {SRC_CTRL_NAVI, "zmnavi"},       {SRC_CTRL_ASR, "zmasr"}, {SRC_CTRL_AUX, "zmaux1"},
    {SRC_CTRL_AIRCOND, "zmaircond"},
};

} // namespace

void SourceGroup::Beep() {
    if (m_pController) {
        m_pController->ToBeep();
    }
}

void SourceGroup::ShowPopup(bool show) {
    if (m_pItems && m_pWindows) {
        m_pItems->ShowItem(m_nWindow, ITEM_SRC_GROUP, show);
        m_pWindows->drawAllItem();
    }
}

SourceGroupClick SourceGroup::Click(long ctrlId) {
    if (ctrlId == SRC_CTRL_OPEN || ctrlId == SRC_CTRL_CLOSE) {
        Beep();
        ShowPopup(ctrlId == SRC_CTRL_OPEN);
        return ctrlId == SRC_CTRL_OPEN ? SourceGroupClick::Opened : SourceGroupClick::Done;
    }
    const SourceRow* row = FindRow(SOURCES, &SourceRow::control, ctrlId);
    if (!row) {
        return SourceGroupClick::Other;
    }
    Beep();
    if (m_pController) {
        m_pController->QueryLauncher(row->application, ctrlId == SRC_CTRL_ASR ? m_pSpeechData : "null");
    }
    return SourceGroupClick::Done;
}
