#pragma once

#include "DiscQDB.h"

#include <string>

/** What the list pages share: the list on screen, where it stood when it was left, what is known complete. */
struct ListState {
    int m_nCurListFrom = LIST_FROM_ALL_AUDIO; ///< source of the list on screen
    int m_nClickFolderId = 1;                 ///< folder last opened
    int m_nListTopIndex = -1;                 ///< remembered when a list is left
    int m_nFolderTopIndex = -1;
    int m_nFolderCurSel = -1;
    bool m_bSelPlayingRow = false; ///< the next marking of the playing row also selects it
    std::string m_szListSql;       ///< statement last sent
    bool m_bAudioDbDone = false;   ///< the catalogue of that type is complete
    bool m_bVideoDbDone = false;
    bool m_bPhotoDbDone = false;
};
