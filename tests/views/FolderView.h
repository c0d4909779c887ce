#pragma once

#include "tests/views/ListView.h"

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
    {.type = PLAY_TYPE_MUSIC,
     .tab = ITEM_TAB_MUSIC,
     .fileType = Catalogue::Music,
     .folders = LIST_FROM_AUDIO_FOLDERS,
     .contents = LIST_FROM_AUDIO_IN_FOLDER,
     .state = VIEW_STATE_MUSIC_LIST,
     .fileIcon = 140,
     .emptyText = 71},
    {.type = PLAY_TYPE_VIDEO,
     .tab = ITEM_TAB_VIDEO,
     .fileType = Catalogue::Video,
     .folders = LIST_FROM_VIDEO_FOLDERS,
     .contents = LIST_FROM_VIDEO_IN_FOLDER,
     .state = VIEW_STATE_VIDEO_LIST,
     .fileIcon = 139,
     .emptyText = 72},
    {.type = PLAY_TYPE_PHOTO,
     .tab = ITEM_TAB_PHOTO,
     .fileType = Catalogue::Picture,
     .folders = LIST_FROM_PHOTO_FOLDERS,
     .contents = LIST_FROM_PHOTO_IN_FOLDER,
     .state = VIEW_STATE_PHOTO_LIST,
     .fileIcon = 137,
     .emptyText = 70},
};

/** A disc with folders 1 to 9 of each type; folder 5 holds files 1 to 8, folder 9 nothing. */
class FolderView : public ListView {
protected:
    explicit FolderView(UnitOptions options = {}) : ListView(std::move(options)) {
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
        unit.disc.mixedType(MIXED_MUSIC | MIXED_VIDEO | MIXED_PHOTO);
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
    /** The files of a folder are on screen; its row was touched with `top` as the first folder in view. */
    void openFolder(const FolderKind& kind, int folder, int playingFolder = 5, int top = 0) {
        listFolders(kind, playingFolder);
        clickRow(folder - 1, WND_MEDIA_LIST, top);
        tick();
        forget();
    }
    Item contents() { return list(WND_FOLDER_LIST); }
    std::string title() { return unit.main.item(WND_FOLDER_LIST, ITEM_FOLDER_TITLE).text; }
};

} // namespace zm::test
