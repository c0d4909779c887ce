#pragma once

class CUI_BtList;
class DiscQDB;
class ListControls;
class ListMenu;
class PlayingRow;
struct ListSource;
struct ListState;

/** Brings the rows that the catalogue has fetched into the list controls. */
class ListFill {
public:
    ListFill(DiscQDB& catalogue, ListState& lists, const ListControls& controls, ListMenu& menu,
             PlayingRow& playingRow)
        : m_discDb(catalogue), m_lists(lists), m_controls(controls), m_menu(menu), m_playingRow(playingRow) {}

    /** Appends the rows of source `nFrom` that its control does not have yet. */
    void InsertUIListData(int nFrom);

private:
    void InsertRows(const ListSource& source, CUI_BtList& list, int nCount);

    DiscQDB& m_discDb;
    ListState& m_lists;
    const ListControls& m_controls;
    ListMenu& m_menu;
    PlayingRow& m_playingRow;
};
