#pragma once

#include "DiscOsdView.h"
#include "tests/support/Harness.h"

/** What of the overlay neither screen, log nor public operations show. Each call runs on the event thread. */
struct DiscOsdViewTest {
    explicit DiscOsdViewTest(zm::test::Unit& unit) : m_unit(unit) {}

    int nextChapter() {
        return get<int>([](DiscOsdView& view) { return view.m_steps.Next(); });
    }
    bool padShown() {
        return get<bool>([](DiscOsdView& view) { return view.m_goto.IsShown(); });
    }
    /** An overlay that has lost its controller. */
    void withoutController(const std::function<void(DiscOsdView&)>& task) {
        m_unit.onViewThread([&] {
            DiscOsdView& view = m_unit.osdView();
            DiscViewController* controller = view.m_state.m_pController;
            view.m_state.m_pController = nullptr;
            task(view);
            view.m_state.m_pController = controller;
        });
        m_unit.settle();
    }
    void clickWithoutController(int window, int control, int state) {
        withoutController([&](DiscOsdView& view) { view.OnClick(nullptr, window, control, state); });
    }

private:
    template <class T, class Reader>
    T get(Reader read) {
        T value{};
        m_unit.onViewThread([&] { value = read(m_unit.osdView()); });
        return value;
    }

    zm::test::Unit& m_unit;
};
