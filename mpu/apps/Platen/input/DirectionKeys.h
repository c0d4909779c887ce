#pragma once

class CUI_BtList;
class ControlLink;
class ListChange;
class ListClicks;
class ListControls;
class ReturnToList;
struct ListState;
struct PageState;

/** The keys whose meaning depends on the page: directions, encoder, enter and return. */
class DirectionKeys {
public:
    DirectionKeys(const ControlLink& control, const PageState& state, const ListState& lists,
                  const ListControls& controls, ListChange& change, ReturnToList& returnToList,
                  ListClicks& clicks)
        : m_control(control), m_state(state), m_lists(lists), m_controls(controls), m_change(change),
          m_returnToList(returnToList), m_clicks(clicks) {}

    void OnKey_K_Up();
    void OnKey_K_Down();
    void OnKey_K_Left();
    void OnKey_K_Right();
    void OnKey_K_Enter();
    void OnKey_K_Return();
    void OnKey_K_Encoder_Inc();
    void OnKey_K_Encoder_Dec();

private:
    /** The page whose list the keys move; 0 when the source has none. */
    int CurrentPage() const;
    CUI_BtList* CurrentList() const;

    const ControlLink& m_control;
    const PageState& m_state;
    const ListState& m_lists;
    const ListControls& m_controls;
    ListChange& m_change;
    ReturnToList& m_returnToList;
    ListClicks& m_clicks;
};
