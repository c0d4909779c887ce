#include "disc/TypeReports.h"

#include "DiscViewItems.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "lists/ListMenu.h"
#include "lists/MediaTypes.h"
#include "pages/PageState.h"

void TypeReports::OnUserMsgClipsType() {
    m_state.m_nCurPlayType = static_cast<PlayType>(m_data.GetDeviceStatus().nMediaType);
    LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscView::OnUserMessage]------set m_nCurPlayType=%d\n",
            m_state.m_nCurPlayType);
    m_state.m_nCurType = m_state.m_nCurPlayType;
    m_menu.SetMediaTypeIcon(WND_MEDIA_LIST);
    m_menu.SetMediaTypeIcon(WND_FOLDER_LIST);
    if (const MediaType* type = FindMediaType(m_state.m_nCurPlayType)) {
        m_state.m_nPlayListFrom = type->playList;
    }
}

void TypeReports::OnUserMsgMixedType() {
    m_state.m_nMixedType = m_data.GetDeviceStatus().nMixedType;
    LOGBASE(LOG_LEV_TRACE, "OnUserMessage", "[DiscView::OnUserMessage]------m_nMixedType=0x%x\n",
            static_cast<unsigned>(m_state.m_nMixedType));
}
