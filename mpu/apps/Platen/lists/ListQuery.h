#pragma once

#include "DiscQDB.h"
#include "DiscViewIds.h"

#include <string>

class ControlLink;
class ListControls;
class ListFill;
struct ListState;
struct PageState;

namespace Oro::ZMCAR {
class ViewUI;
}

/** The statements behind the lists, and the wait for their rows. */
class ListQuery {
public:
    ListQuery(Oro::ZMCAR::ViewUI& view, DiscQDB& catalogue, const ControlLink& control,
              const PageState& state, ListState& lists, const ListControls& controls, ListFill& fill)
        : m_view(view), m_discDb(catalogue), m_control(control), m_state(state), m_lists(lists),
          m_controls(controls), m_fill(fill) {}

    /** All files of one type. */
    void OnQueryAudioList();
    void OnQueryVideoList();
    void OnQueryPictureList();
    /** The one of these three that lists type `nType`; other types do nothing. */
    void OnQueryList(PlayType nType);
    /** The tracks of the CD that plays. */
    void OnQueryCurAudioList();
    /** Sends m_szListSql and, for folders, a second statement for the list on screen; waits for the rows. */
    void Send(const std::string& sql, const std::string& subSql);
    void SetQueryWaitTimer();
    /** A tick of the wait: shows the rows that have come. */
    void FileQueryWait();

private:
    void QueryFiles(LIST_FROM_EN nFrom, const char* logName, const std::string& sql);
    void SendLogged(const char* logName, const std::string& sql);
    void TakeFetchedRows();

    Oro::ZMCAR::ViewUI& m_view;
    DiscQDB& m_discDb;
    const ControlLink& m_control;
    const PageState& m_state;
    ListState& m_lists;
    const ListControls& m_controls;
    ListFill& m_fill;
    int m_nQueWaitTime = 0; ///< ticks spent waiting for the query
    bool m_bQueryWaiting = false;
};
