#pragma once

#include "DiscQDB.h"

/** The catalogue's list that keeps the rows of a source. */
enum class KeptIn { AudioFolders, VideoFolders, PhotoFolders, Audio, Video, Photo, Search };

/** Entry of the left menu that the list stands for. */
enum class MenuMark { Files, Folders, None };

/** Which row of a list counts as playing. */
enum class PlayingMark {
    Position, ///< the one at the position that the catalogue finds for the playing file
    File,     ///< the file itself is looked for
    Folder    ///< the playing file's folder
};

/** All that tells the list sources (LIST_FROM_...) apart, in the catalogue and on the pages. */
struct ListSource {
    LIST_FROM_EN from;
    KeptIn keptIn;
    QUE_BASE_EN queBase; ///< what a query of its rows gives
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
/** Of a source that exists, as that of the list on screen always does. */
const ListSource& ListSourceOf(int nFrom);
