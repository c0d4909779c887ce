#pragma once

#include "tests/views/list_view.h"

namespace zm::test {

/** A kind of files and how its folders are listed. */
struct FolderKind {
    int type;
    int tab;
    int fileType;
    int folders; ///< list sources
    int contents;
    int state;
    int fileIcon;
    int emptyText;
};
inline constexpr FolderKind FOLDER_KINDS[] = {
    {PLAY_TYPE_MUSIC, ITEM_TAB_MUSIC, 1, 0, 1, VIEW_STATE_MUSIC_LIST, 140, 71},
    {PLAY_TYPE_VIDEO, ITEM_TAB_VIDEO, 2, 2, 3, VIEW_STATE_VIDEO_LIST, 139, 72},
    {PLAY_TYPE_PHOTO, ITEM_TAB_PHOTO, 3, 4, 5, VIEW_STATE_PHOTO_LIST, 137, 70},
};

/** A disc with folders 1 to 9 of each type; folder 5 holds files 1 to 8, folder 9 nothing. */
class FolderView : public ListView {
protected:
    FolderView() {
        catalogue.sql("DELETE FROM files");
        catalogue.sql("DELETE FROM folders");
        for (const auto type : {Catalogue::Music, Catalogue::Video, Catalogue::Picture}) {
            for (int id = 1; id <= 9; ++id) {
                catalogue.folder(id, id == 1 ? 0 : 1, type, "folder " + std::to_string(id), 0,
                                 id == 9 ? 0 : 8);
            }
            for (int fid = 1; fid <= 8; ++fid) {
                catalogue.file(fid, 5, type, "file " + std::to_string(fid));
            }
        }
    }
    /** A file of the type and folder plays. */
    void playIn(const FolderKind& kind, int folder, int file = 3) {
        play(kind.type);
        unit.disc.mixedType(14);
        unit.disc.track(
            {.curMediaId = file, .curMediaIds = 8, .mediaId = 1, .mediaIds = 8, .parentFolder = folder});
        forget();
    }
    /** The list of folders is on screen. */
    void listFolders(const FolderKind& kind, int playingFolder = 5) {
        playIn(kind, playingFolder);
        press(kind.tab);
        tick();
        press(ITEM_FOLDER_MENU);
        tick();
        forget();
    }
    Item contents() { return list(WND_FOLDER_LIST); }
    std::string title() { return unit.main.item(WND_FOLDER_LIST, 1012).text; }
};

} // namespace zm::test
