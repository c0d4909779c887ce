#include "ListSources.h"

#include "DiscViewItems.h"

#include <iterator>

namespace {

constexpr MenuMark FOLDERS = MenuMark::Folders;
constexpr MenuMark FILES = MenuMark::Files;
constexpr bool FOLLOWS = true; ///< the title
constexpr bool STAYS = false;
constexpr bool KEYS = true;
constexpr bool NO_KEYS = false;

constexpr ListSource SOURCES[] = {
    {LIST_FROM_AUDIO_FOLDERS, KeptIn::AudioFolders, QUE_BASE_FOLDER, WND_MEDIA_LIST, ICON_ROW_FOLDER,
     ITEM_ALL_MUSIC, FOLDERS, FOLLOWS, KEYS, PlayingMark::Folder, FTYPE_FOLDER, 3},
    {LIST_FROM_AUDIO_IN_FOLDER, KeptIn::AudioFolders, QUE_BASE_FOLDER, WND_FOLDER_LIST, ICON_ROW_MUSIC,
     ITEM_ALL_MUSIC, FOLDERS, FOLLOWS, KEYS, PlayingMark::File, FTYPE_AUDIO, 2},
    {LIST_FROM_VIDEO_FOLDERS, KeptIn::VideoFolders, QUE_BASE_FOLDER, WND_MEDIA_LIST, ICON_ROW_FOLDER,
     ITEM_ALL_VIDEO, FOLDERS, STAYS, KEYS, PlayingMark::Folder, FTYPE_FOLDER, 3},
    {LIST_FROM_VIDEO_IN_FOLDER, KeptIn::VideoFolders, QUE_BASE_FOLDER, WND_FOLDER_LIST, ICON_ROW_VIDEO,
     ITEM_ALL_VIDEO, FOLDERS, STAYS, KEYS, PlayingMark::File, FTYPE_VIDEO, 2},
    {LIST_FROM_PHOTO_FOLDERS, KeptIn::PhotoFolders, QUE_BASE_FOLDER, WND_MEDIA_LIST, ICON_ROW_FOLDER,
     ITEM_ALL_PHOTO, FOLDERS, FOLLOWS, KEYS, PlayingMark::Folder, FTYPE_FOLDER, 3},
    {LIST_FROM_PHOTO_IN_FOLDER, KeptIn::PhotoFolders, QUE_BASE_FOLDER, WND_FOLDER_LIST, ICON_ROW_PHOTO,
     ITEM_ALL_PHOTO, FOLDERS, FOLLOWS, KEYS, PlayingMark::File, FTYPE_PICTURE, 2},
    {LIST_FROM_ALL_AUDIO, KeptIn::Audio, QUE_BASE_MEDIA, WND_MEDIA_LIST, ICON_ROW_MUSIC, ITEM_ALL_MUSIC,
     FILES, FOLLOWS, KEYS, PlayingMark::Position, FTYPE_AUDIO, 0},
    {LIST_FROM_ALL_PHOTO, KeptIn::Photo, QUE_BASE_MEDIA, WND_MEDIA_LIST, ICON_ROW_PHOTO, ITEM_ALL_PHOTO,
     FILES, FOLLOWS, KEYS, PlayingMark::Position, FTYPE_PICTURE, 0},
    {LIST_FROM_ALL_VIDEO, KeptIn::Video, QUE_BASE_MEDIA, WND_MEDIA_LIST, ICON_ROW_VIDEO, ITEM_ALL_VIDEO,
     FILES, STAYS, KEYS, PlayingMark::Position, FTYPE_VIDEO, 0},
    {LIST_FROM_CUR_AUDIO, KeptIn::Audio, QUE_BASE_MEDIA, WND_CD_LIST, ICON_ROW_MUSIC, 0, MenuMark::None,
     STAYS, KEYS, PlayingMark::Position, FTYPE_AUDIO, 0},
    {LIST_FROM_SEARCH, KeptIn::Search, QUE_BASE_MEDIA, WND_MEDIA_LIST, ICON_ROW_MUSIC, ITEM_ALL_MUSIC,
     MenuMark::None, FOLLOWS, NO_KEYS, PlayingMark::File, FTYPE_AUDIO, 3},
};

consteval bool IsComplete() {
    for (int i = 0; i < static_cast<int>(std::size(SOURCES)); ++i) {
        if (SOURCES[i].from != i) {
            return false;
        }
    }
    return std::size(SOURCES) == LIST_FROM_SEARCH + 1;
}
static_assert(IsComplete(), "each list source has its row, in the order of their numbers");

} // namespace

const ListSource* FindListSource(int nFrom) {
    return nFrom >= 0 && nFrom < static_cast<int>(std::size(SOURCES)) ? &SOURCES[nFrom] : nullptr;
}

const ListSource& ListSourceOf(int nFrom) {
    return SOURCES[nFrom];
}
