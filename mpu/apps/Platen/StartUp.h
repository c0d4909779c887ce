#pragma once

#include <string>

class DiscOsdView;
class DiscView;
class DiscViewController;

/** The command line, as far as start-up uses it. */
struct StartUpArguments {
    std::string group; ///< the word that ends the window group's name
    std::string song;  ///< for voice play
    bool bSongGiven = false;
};

/**
 * Connects the three, initialises and starts everything up to the shown windows; false (logged where it is
 * told) at the first failure, which ends the event thread if it runs already: it must not outlive the
 * controller.
 */
bool StartUp(DiscView& app, DiscOsdView& osd, DiscViewController& controller,
             const StartUpArguments& arguments);
/** Closes the main view, stops and closes the controller; the first that returns false ends the sequence. */
bool ShutDown(DiscView& app, DiscViewController& controller);
