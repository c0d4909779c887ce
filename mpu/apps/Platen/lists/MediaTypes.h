#pragma once

#include "DiscQDB.h"
#include "DiscViewIds.h"

#include <span>

class DiscViewController;
struct ListState;

inline constexpr int ROOT_FOLDER = 1;

/** Kinds of rows for OnHandleUIListClick. */
enum RowKind : int { ROW_MUSIC = 1, ROW_VIDEO = 2, ROW_PICTURE = 3 };

/** The second parameter of PlayTrack, where it tells what kind of file is meant. */
enum TrackKind : int { TRACK_KIND_MUSIC = 1, TRACK_KIND_PHOTO = 2, TRACK_KIND_VIDEO = 3 };

/** What tells the three kinds of files on a disc apart in lists and folders. */
struct MediaType {
    PlayType type;
    int mixedBit;
    int noFileText;
    ViewState state; ///< of its lists
    FTYPE_EN fileType;
    int icon; ///< of the button that leads back to what plays
    long tab; ///< control that chooses the type
    LIST_FROM_EN allFrom;
    LIST_FROM_EN foldersFrom;
    LIST_FROM_EN inFolderFrom;
    PlayList playList;       ///< a play page returns to all files...
    PlayList playListFolder; ///< ...or to the folder of what plays
    RowKind rowKind;
    TrackKind trackKind; ///< with which the number pad sends PlayTrack
    long allControl;     ///< control that shows all files
    bool ListState::*dbDone;
    const char* changeLog; ///< operation that is logged when the type is chosen; null: nothing
    void (*announce)(DiscViewController&); ///< tells the disc service that the type was chosen
};

std::span<const MediaType> MediaTypes();
/** The row of a browsed or playing type; null for types without file lists. */
const MediaType* FindMediaType(int nType);
