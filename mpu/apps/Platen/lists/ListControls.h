#pragma once

class CUIAnalysis;
class CUI_BtList;

/** The list controls of the three list pages; one that the resource does not have is null. */
class ListControls {
public:
    /** Takes them from the resource, and empties them. */
    void TakeLists(CUIAnalysis& ui);
    /** The list of a page; null for other pages, too. */
    CUI_BtList* ListOf(int nWndId) const;
    void DeleteRows(int nWndId) const;

private:
    CUI_BtList* m_pAudioList = nullptr;       ///< of WND_MEDIA_LIST
    CUI_BtList* m_pFolderAudioList = nullptr; ///< of WND_FOLDER_LIST
    CUI_BtList* m_pCDList = nullptr;          ///< of WND_CD_LIST
};
