#pragma once

class ControlLink;
class DiscQDB;
class ListControls;
class ListMenu;
class ListQuery;
class RowPlay;
struct ListState;
struct PageState;
struct Widgets;

/**
 * The list of all folders and the contents of one. OnQueryFolderList and OnQueryFolderList2 belong to the
 * interface, but no page calls them.
 */
class Folders {
public:
    Folders(DiscQDB& catalogue, const Widgets& widgets, const ControlLink& control, PageState& state,
            ListState& lists, const ListControls& controls, ListMenu& menu, ListQuery& query,
            RowPlay& rowPlay)
        : m_discDb(catalogue), m_widgets(widgets), m_control(control), m_state(state), m_lists(lists),
          m_controls(controls), m_menu(menu), m_query(query), m_rowPlay(rowPlay) {}

    void OnQueryAllFolders();
    /** The files of a folder, of all three types. */
    void OnQueryAudiosInFolder(int nFolderId);
    /** The sub-folders and files of a folder of the playing type, ordered; empties its list. */
    void OnQueryFolderList(int nFolderId);
    /** The same in any order; the list keeps its rows. */
    void OnQueryFolderList2(int nFolderId);
    /** Opens a folder; 0: the list of all of them. */
    void OnGotoFolderListPage(int nFolderId);
    /** A touched row: plays a file, opens a folder. */
    void OnOpenFolder(int nListFrom, int nLine);
    /** From a folder's contents to the list of all of them. */
    void OnHandleUIReturnUpFolder(int nListFrom);

private:
    bool IsFolderEmpty(int nFileType, int nFolderId);
    void ShowFolderTitle(int nFileType, int nFolderId);
    void OpenFolder(int nFolderId);
    void QuerySubFolders(const char* logName, int nFolderId, const char* order);

    DiscQDB& m_discDb;
    const Widgets& m_widgets;
    const ControlLink& m_control;
    PageState& m_state;
    ListState& m_lists;
    const ListControls& m_controls;
    ListMenu& m_menu;
    ListQuery& m_query;
    RowPlay& m_rowPlay;
};
