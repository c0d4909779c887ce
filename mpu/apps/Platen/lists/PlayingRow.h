#pragma once

class CDiscData;
class CUI_BtList;
class DiscQDB;
class ListControls;
struct ListSource;
struct ListState;
struct Widgets;

/** Marks the row of what plays in the list on screen and, if asked, selects it. */
class PlayingRow {
public:
    PlayingRow(CDiscData& data, DiscQDB& catalogue, const Widgets& widgets, ListState& lists,
               const ListControls& controls)
        : m_data(data), m_discDb(catalogue), m_widgets(widgets), m_lists(lists), m_controls(controls) {}

    /** In the list of source `nFrom`; `bSel` also selects. */
    void OnFunc_ListJmp_UiFrom(int nFrom, bool bSel);
    /** In lists whose positions the catalogue knows. */
    void OnFunc_ListJump_Index(int nFrom, bool bSel);
    /** In lists of folders, of a folder's contents and of matches; whether there is such a row. */
    bool OnFunc_FolderListJump_Index(int nFrom, bool bSel);

private:
    int FindPlayingRow(const ListSource& source, CUI_BtList& list);
    void SelectWithoutPlaying(const ListSource& source, CUI_BtList& list);
    void RedrawAll();

    CDiscData& m_data;
    DiscQDB& m_discDb;
    const Widgets& m_widgets;
    ListState& m_lists;
    const ListControls& m_controls;
};
