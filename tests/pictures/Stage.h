#pragma once

#include "tests/support/Decoder.h"
#include "tests/support/Harness.h"

#include <string>

namespace zm::test {

/** A unit, a disc and a decoder, to bring pages up as a driver does. */
class Stage {
public:
    static constexpr int Files = 12;

    explicit Stage(ScreenSize screen = {});

    /** A disc of that type plays its third file; the decoder's picture is there if the type has one. */
    void play(int mediaType);
    /** What the music page shows below the file's name, and a time. */
    void song(const std::string& artist, const std::string& album);
    /** The disc service has found a sleeve: a landscape, or a pale one that is wide. */
    enum class Sleeve { Landscape, PaleAndWide };
    void cover(Sleeve sleeve);
    /** Repeat and shuffle, by the service's numbers, and the overlay shows them. */
    void modes(int repeat, int shuffle);
    /** A touch on the picture: the overlay comes up. */
    void showOverlay();
    /** Releases a control of the page: its action, without the page's look of being pressed. */
    void click(int window, int control);
    void clickOverlay(int window, int control);
    /** Digits on the pad of either view. */
    void type(const std::string& digits, void (Stage::*touch)(int window, int control));
    /** The finger comes down on an item of the main view and stays. */
    void press(int window, int item);
    /** Gives a query time to bring rows. */
    void wait();

    /** Twelve files with names of several scripts in each type, in one folder. */
    void nameFiles();
    /** The same with the longest names, and a last file 65535. */
    void nameFilesLong();
    /** Folders 1 to 6 of each type; the files are in the second. */
    void nameFolders();
    void removeFiles();

    Catalogue catalogue;
    Unit unit;

private:
    Decoder m_decoder;
};

} // namespace zm::test
