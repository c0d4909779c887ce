#pragma once

struct OverlayState;

/** The bars of the four kinds of clip: their start values, which of them is current, their source group. */
class Bars {
public:
    explicit Bars(OverlayState& state) : m_state(state) {}

    /** Sets the start values of all bars. */
    void Init();
    /** Makes the bar of the clip type current; types without one leave it. */
    void FollowClip();
    /** The animation with which the current bar goes. */
    void PlayHideAnimation();
    /** Closes the source group of a bar without drawing it. */
    void HideSourceGroup(int window);
    /** Closes the source group of the current bar and redraws everything. */
    void DrawAllItem();

    static bool IsBar(int window);
    /** Whether it is the bar of a DVD or VCD. */
    static bool IsDiscBar(int window);

private:
    OverlayState& m_state;
};
