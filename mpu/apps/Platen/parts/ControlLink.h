#pragma once

class DiscViewController;

/**
 * A view's access to the controller: player commands, timers, key click, launcher. Without a controller all of
 * it does nothing. Event thread only, except AttachControl and timers at start-up.
 */
class ControlLink {
public:
    /** Null takes the controller away. */
    void AttachControl(DiscViewController* controller) { m_pController = controller; }
    DiscViewController* Controller() const { return m_pController; }

    /** Sends a player command: `Send(&DiscViewController::PlayTrack, track, kind)`. */
    template <class... Parameters, class... Arguments>
    void Send(bool (DiscViewController::*command)(Parameters...), Arguments... arguments) const {
        if (m_pController) {
            (m_pController->*command)(arguments...);
        }
    }

    /** Key click. */
    void ToBeep() const;
    /** Asks the launcher to bring an application to the front. */
    void QueryApplication(const char* name) const;
    void QueryHome() const;

    /** Starts timer `id` (ENUM_TIMER_...) with its period, anew if it runs. */
    void StartTimer(unsigned int id) const;
    void KillTimer(unsigned int id) const;
    /** The overlay goes 10 s from now. */
    void SetDisplayOSDTimer() const;
    /** The way back to the play page, every 8 s. */
    void SetDisplayPlayViewTimer() const;
    /** The no-disc timer, 3 s. */
    void SetDisplayNoDiscTimer() const;
    /** Loading may last 40 s. */
    void SetLoadingTimer() const;
    /** The source popup closes 5 s from now. */
    void SetDisplaySrcTimer() const;

private:
    DiscViewController* m_pController = nullptr;
};
