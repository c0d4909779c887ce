#pragma once

#include "DiscViewIds.h"

class CDiscData;
class ControlLink;
class Folders;
class ListControls;
class ListFill;
class ListMenu;
class ListQuery;
struct ListState;
struct MediaType;
struct PageState;

namespace Oro::ZMCAR {
class ViewUI;
}

/** Changes the list on screen: for a tab, on the way back from a play page, and as the catalogue grows. */
class ListChange {
public:
    ListChange(Oro::ZMCAR::ViewUI& view, CDiscData& data, const ControlLink& control, PageState& state,
               ListState& lists, const ListControls& controls, ListMenu& menu, ListFill& fill,
               ListQuery& query, Folders& folders)
        : m_view(view), m_data(data), m_control(control), m_state(state), m_lists(lists),
          m_controls(controls), m_menu(menu), m_fill(fill), m_query(query), m_folders(folders) {}

    void OnHandleChangeToMusic() { ChangeToType(PLAY_TYPE_MUSIC); }
    void OnHandleChangeToVideo() { ChangeToType(PLAY_TYPE_VIDEO); }
    void OnHandleChangeToPhoto() { ChangeToType(PLAY_TYPE_PHOTO); }
    void ShowAllFiles(const MediaType& type);
    /** From a play page to the list that it came from. */
    void OnHandleUIReturnList();
    /** The disc service has written more of the catalogue. */
    void OnUserMsgUpdateDb();

private:
    void ChangeToType(PlayType nType);
    void ShowNoFiles(const MediaType& type);
    void ReturnToSearch();

    Oro::ZMCAR::ViewUI& m_view;
    CDiscData& m_data;
    const ControlLink& m_control;
    PageState& m_state;
    ListState& m_lists;
    const ListControls& m_controls;
    ListMenu& m_menu;
    ListFill& m_fill;
    ListQuery& m_query;
    Folders& m_folders;
};
