#include "lists/MediaTypes.h"

#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "FindRow.h"
#include "lists/ListState.h"

namespace {

void AnnounceMusic(DiscViewController& controller) {
    controller.GotoSubList(PLAY_TYPE_MUSIC, ROOT_FOLDER);
}

void AnnounceVideo(DiscViewController& controller) {
    controller.GotoSubList(PLAY_TYPE_VIDEO, ROOT_FOLDER);
}

/** Photos are announced by a format instead of a list, and without a log line. */
void AnnouncePhotos(DiscViewController& controller) {
    controller.ChangeFormat(PLAY_TYPE_PHOTO);
}

constexpr MediaType MUSIC = {
    .type = PLAY_TYPE_MUSIC,
    .mixedBit = MIXED_MUSIC,
    .noFileText = TXT_NO_MUSIC,
    .state = VIEW_STATE_MUSIC_LIST,
    .fileType = FTYPE_AUDIO,
    .icon = ICON_TYPE_MUSIC,
    .tab = ITEM_TAB_MUSIC,
    .allFrom = LIST_FROM_ALL_AUDIO,
    .foldersFrom = LIST_FROM_AUDIO_FOLDERS,
    .inFolderFrom = LIST_FROM_AUDIO_IN_FOLDER,
    .playList = PLAY_LIST_MUSIC,
    .playListFolder = PLAY_LIST_MUSIC_FOLDER,
    .rowKind = ROW_MUSIC,
    .trackKind = TRACK_KIND_MUSIC,
    .allControl = ITEM_ALL_MUSIC,
    .dbDone = &ListState::m_bAudioDbDone,
    .changeLog = "OnHandleChangeToMusic",
    .announce = AnnounceMusic,
};

constexpr MediaType VIDEO = {
    .type = PLAY_TYPE_VIDEO,
    .mixedBit = MIXED_VIDEO,
    .noFileText = TXT_NO_VIDEO,
    .state = VIEW_STATE_VIDEO_LIST,
    .fileType = FTYPE_VIDEO,
    .icon = ICON_TYPE_VIDEO,
    .tab = ITEM_TAB_VIDEO,
    .allFrom = LIST_FROM_ALL_VIDEO,
    .foldersFrom = LIST_FROM_VIDEO_FOLDERS,
    .inFolderFrom = LIST_FROM_VIDEO_IN_FOLDER,
    .playList = PLAY_LIST_VIDEO,
    .playListFolder = PLAY_LIST_VIDEO_FOLDER,
    .rowKind = ROW_VIDEO,
    .trackKind = TRACK_KIND_VIDEO,
    .allControl = ITEM_ALL_VIDEO,
    .dbDone = &ListState::m_bVideoDbDone,
    .changeLog = "OnHandleChangeToVideo",
    .announce = AnnounceVideo,
};

constexpr MediaType PHOTOS = {
    .type = PLAY_TYPE_PHOTO,
    .mixedBit = MIXED_PHOTO,
    .noFileText = TXT_NO_PHOTO,
    .state = VIEW_STATE_PHOTO_LIST,
    .fileType = FTYPE_PICTURE,
    .icon = ICON_TYPE_PHOTO,
    .tab = ITEM_TAB_PHOTO,
    .allFrom = LIST_FROM_ALL_PHOTO,
    .foldersFrom = LIST_FROM_PHOTO_FOLDERS,
    .inFolderFrom = LIST_FROM_PHOTO_IN_FOLDER,
    .playList = PLAY_LIST_PHOTO,
    .playListFolder = PLAY_LIST_PHOTO_FOLDER,
    .rowKind = ROW_PICTURE,
    .trackKind = TRACK_KIND_PHOTO,
    .allControl = ITEM_ALL_PHOTO,
    .dbDone = &ListState::m_bPhotoDbDone,
    .changeLog = nullptr,
    .announce = AnnouncePhotos,
};

constexpr MediaType TYPES[] = {MUSIC, VIDEO, PHOTOS};

} // namespace

std::span<const MediaType> MediaTypes() {
    return TYPES;
}

const MediaType* FindMediaType(int nType) {
    return FindRow(TYPES, &MediaType::type, static_cast<PlayType>(nType));
}
