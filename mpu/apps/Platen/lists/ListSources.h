#pragma once

#include "DiscQDB.h"

/** Entry of the left menu that the list stands for. */
enum class MenuMark { Files, Folders, None };

/** Which row of a list counts as playing. */
enum class PlayingMark {
    Position, ///< the catalogue knows the playing file's position
    File,     ///< the file itself is looked for
    Folder    ///< the playing file's folder
};

/** All that tells the list sources (LIST_FROM_...) apart on the pages. */
struct ListSource {
    LIST_FROM_EN from;
    int page;
    int rowIcon;       ///< of all its rows, folders among files included
    int menuItem;      ///< the one "all files" entry that is shown; 0: the menu stays as it is
    MenuMark menuMark; ///< the selected entry
    bool followsTitle; ///< the page's title follows the playing item
    bool takesKeys;    ///< the direction keys move it
    PlayingMark mark;
    FTYPE_EN rowType; ///< of the row that is looked for
    int margin;       ///< rows that may stand above the selected one in view, where it is looked for
};

/** Null for a source that does not exist. */
const ListSource* FindListSource(int nFrom);
