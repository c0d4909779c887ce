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
    {OSD_CTRL_SRC_RADIO, "zmradio"},     {OSD_CTRL_SRC_USB, "zmusb"}, {OSD_CTRL_SRC_BTTEL, "zmbttel"},
    {OSD_CTRL_SRC_NAVI, "zmnavi"},       {OSD_CTRL_SRC_ASR, "zmasr"}, {OSD_CTRL_SRC_AUX, "zmaux1"},
    {OSD_CTRL_SRC_AIRCOND, "zmaircond"},
};

} // namespace

void SourceGroup::Beep() {
    if (m_pController) {
        m_pController->ToBeep();
    }
}

void SourceGroup::ShowPopup(bool show) {
    if (m_pItems && m_pWindows) {
        m_pItems->ShowItem(m_nWindow, OSD_ITEM_SRC_GROUP, show);
        m_pWindows->drawAllItem();
    }
}

SourceGroupClick SourceGroup::Click(long ctrlId) {
    if (ctrlId == OSD_CTRL_SRC_OPEN || ctrlId == OSD_CTRL_SRC_CLOSE) {
        Beep();
        ShowPopup(ctrlId == OSD_CTRL_SRC_OPEN);
        return ctrlId == OSD_CTRL_SRC_OPEN ? SourceGroupClick::Opened : SourceGroupClick::Done;
    }
    const SourceRow* row = FindRow(SOURCES, &SourceRow::control, ctrlId);
    if (!row) {
        return SourceGroupClick::Other;
    }
    Beep();
    if (m_pController) {
        m_pController->QueryLauncher(row->application, ctrlId == OSD_CTRL_SRC_ASR ? m_pSpeechData : "null");
    }
    return SourceGroupClick::Done;
}
