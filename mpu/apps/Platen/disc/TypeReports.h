#pragma once

class CDiscData;
class ListMenu;
struct PageState;

/** What kind of disc lies in the drive and what kind of it plays. */
class TypeReports {
public:
    TypeReports(CDiscData& data, PageState& state, ListMenu& menu)
        : m_data(data), m_state(state), m_menu(menu) {}

    void OnUserMsgClipsType();
    void OnUserMsgMixedType();

private:
    CDiscData& m_data;
    PageState& m_state;
    ListMenu& m_menu;
};
