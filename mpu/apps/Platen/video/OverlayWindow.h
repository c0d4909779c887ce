#pragma once

class ControlLink;
class DiscOsdView;

namespace Oro::ZMCAR {
class ViewBase;
}

/**
 * The overlay as the main view shows and hides it over the film. Before the overlay has been joined to the
 * view, only the wish is noted.
 */
class OverlayWindow {
public:
    OverlayWindow(Oro::ZMCAR::ViewBase& view, const ControlLink& control)
        : m_view(view), m_control(control) {}

    /** The joined view, or null. */
    DiscOsdView* Osd();
    bool IsShown() const { return m_bVideoOsd; }
    /** Showing also starts the timer that hides it. */
    void SetVisibleOsd(bool bShow);
    /** Hides the view at once; its bar stays and plays no animation. */
    void WithdrawOsd();
    void HideOsdPad();
    void HideOsdAndPad();
    /** Tells it which hard key was pressed (OSD_KEY_TYPE_...). */
    void SetOsdKeyType(int keyType);
    void DrawAllItem();

    /** Expiry of the timers of its state picture and of itself. */
    void DisplayStateEnd();
    void DisplayOSDEnd();

private:
    Oro::ZMCAR::ViewBase& m_view;
    const ControlLink& m_control;
    bool m_bVideoOsd = false;
};
