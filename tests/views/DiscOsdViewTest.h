#pragma once

#include "DiscOsdView.h"
#include "tests/support/Harness.h"

/** What of the overlay neither screen, log nor public operations show. Each call runs on the event thread. */
struct DiscOsdViewTest {
    explicit DiscOsdViewTest(zm::test::Unit& unit) : m_unit(unit) {}

    int nextChapter() { return get(&DiscOsdView::m_nNextChapter); }
    bool padShown() { return get(&DiscOsdView::m_bGotoShown); }
    bool trackChanged() { return get(&DiscOsdView::m_bTrackChanged); }
    void setGotoType(int type) {
        m_unit.onViewThread([&] { m_unit.osdView().m_nGotoType = type; });
    }
    /** A click on an overlay that has lost its controller. */
    void clickWithoutController(int window, int control, int state) {
        m_unit.onViewThread([&] {
            DiscOsdView& view = m_unit.osdView();
            DiscViewController* controller = view.m_pController;
            view.m_pController = nullptr;
            view.OnClick(nullptr, window, control, state);
            view.m_pController = controller;
        });
        m_unit.settle();
    }

private:
    template <class T>
    T get(T DiscOsdView::*member) {
        T value{};
        m_unit.onViewThread([&] { value = m_unit.osdView().*member; });
        return value;
    }

    zm::test::Unit& m_unit;
};
