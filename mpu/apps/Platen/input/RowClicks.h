#pragma once

class Folders;
class ListControls;
class RowPlay;
struct ListState;
struct PageState;

/** A touched row of a list, by the list that is on screen. */
class RowClicks {
public:
    RowClicks(PageState& state, ListState& lists, const ListControls& controls, RowPlay& rowPlay,
              Folders& folders)
        : m_state(state), m_lists(lists), m_controls(controls), m_rowPlay(rowPlay), m_folders(folders) {}

    void OnClickMediaRow();
    void OnClickFolderRow();
    void OnClickCDRow();

private:
    /** The selected row of that page's list, whose place is remembered; -1 without a selection. */
    int TakeRow(int nWndId);

    PageState& m_state;
    ListState& m_lists;
    const ListControls& m_controls;
    RowPlay& m_rowPlay;
    Folders& m_folders;
};
