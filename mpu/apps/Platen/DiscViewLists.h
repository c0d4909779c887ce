#pragma once

#include "DiscView.h"
#include "DiscViewController.h"

/* The tables behind the main view's list and folder pages. */

/** Text over an empty list of pages WND_MEDIA_LIST and WND_FOLDER_LIST. */
inline constexpr int ITEM_LIST_TIP = 2003;
inline constexpr int TXT_LIST_WAIT = 33;

inline constexpr int ROOT_FOLDER = 1;

/** Slots of a row and the pictures of the playing mark. */
enum : int { ROW_SLOT_KIND = 0, ROW_SLOT_PLAYING = 2 };
enum : int { ICON_NONE = 0, ICON_ROW_PLAYING = 143 };

/** Kinds of rows for OnHandleUIListClick. */
enum : int { ROW_MUSIC = 1, ROW_VIDEO = 2, ROW_PICTURE = 3 };

/** Where a list source (LIST_FROM_...) is shown, and the icon of all its rows, folders among files included.
 */
struct DiscView::ListSource {
    int from;
    int page;
    int rowIcon;
    CUI_BtList* DiscView::*control;
};

/** What tells the three kinds of files on a disc apart in lists and folders. */
struct DiscView::MediaType {
    int type; ///< PLAY_TYPE_...
    int mixedBit;
    int noFileText;
    int state; ///< view state of its lists
    int fileType;
    int allFrom;
    int foldersFrom;
    int inFolderFrom;
    int playList;       ///< a play page returns to all files...
    int playListFolder; ///< ...or to the folder of what plays
    int rowKind;        ///< ROW_...
    long allControl;    ///< control that shows all files
    void (DiscView::*queryAll)();
    bool DiscView::*dbDone;
    const char* changeLog; ///< operation that is logged when the type is chosen; null: nothing
    void (*announce)(DiscViewController&); ///< tells the disc service that the type was chosen
};
