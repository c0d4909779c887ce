#include "DiscViewLists.h"

#include "DiscViewItems.h"
#include "parts/FindRow.h"

namespace {

enum : int { ICON_ROW_PHOTO = 137, ICON_ROW_FOLDER = 138, ICON_ROW_VIDEO = 139, ICON_ROW_MUSIC = 140 };

enum : int { TXT_NO_PHOTO = 70, TXT_NO_MUSIC = 71, TXT_NO_VIDEO = 72 };

} // namespace

const DiscView::ListSource* DiscView::FindListSource(int nFrom) {
    static constexpr ListSource ROWS[] = {
        {LIST_FROM_AUDIO_FOLDERS, WND_MEDIA_LIST, ICON_ROW_FOLDER, &DiscView::m_pAudioList},
        {LIST_FROM_AUDIO_IN_FOLDER, WND_FOLDER_LIST, ICON_ROW_MUSIC, &DiscView::m_pFolderAudioList},
        {LIST_FROM_VIDEO_FOLDERS, WND_MEDIA_LIST, ICON_ROW_FOLDER, &DiscView::m_pAudioList},
        {LIST_FROM_VIDEO_IN_FOLDER, WND_FOLDER_LIST, ICON_ROW_VIDEO, &DiscView::m_pFolderAudioList},
        {LIST_FROM_PHOTO_FOLDERS, WND_MEDIA_LIST, ICON_ROW_FOLDER, &DiscView::m_pAudioList},
        {LIST_FROM_PHOTO_IN_FOLDER, WND_FOLDER_LIST, ICON_ROW_PHOTO, &DiscView::m_pFolderAudioList},
        {LIST_FROM_ALL_AUDIO, WND_MEDIA_LIST, ICON_ROW_MUSIC, &DiscView::m_pAudioList},
        {LIST_FROM_ALL_PHOTO, WND_MEDIA_LIST, ICON_ROW_PHOTO, &DiscView::m_pAudioList},
        {LIST_FROM_ALL_VIDEO, WND_MEDIA_LIST, ICON_ROW_VIDEO, &DiscView::m_pAudioList},
        {LIST_FROM_CUR_AUDIO, WND_CD_LIST, ICON_ROW_MUSIC, &DiscView::m_pCDList},
        {LIST_FROM_SEARCH, WND_MEDIA_LIST, ICON_ROW_MUSIC, &DiscView::m_pAudioList},
    };
    return FindRow(ROWS, &ListSource::from, nFrom);
}

std::span<const DiscView::MediaType> DiscView::MediaTypes() {
    static constexpr MediaType ROWS[] = {
        {PLAY_TYPE_MUSIC, MIXED_MUSIC, TXT_NO_MUSIC, VIEW_STATE_MUSIC_LIST, FTYPE_AUDIO, LIST_FROM_ALL_AUDIO,
         LIST_FROM_AUDIO_FOLDERS, LIST_FROM_AUDIO_IN_FOLDER, PLAY_LIST_MUSIC, PLAY_LIST_MUSIC_FOLDER,
         ROW_MUSIC, ITEM_ALL_MUSIC, &DiscView::OnQueryAudioList, &DiscView::m_bAudioDbDone,
         "OnHandleChangeToMusic",
         [](DiscViewController& controller) { controller.GotoSubList(PLAY_TYPE_MUSIC, ROOT_FOLDER); }},
        {PLAY_TYPE_VIDEO, MIXED_VIDEO, TXT_NO_VIDEO, VIEW_STATE_VIDEO_LIST, FTYPE_VIDEO, LIST_FROM_ALL_VIDEO,
         LIST_FROM_VIDEO_FOLDERS, LIST_FROM_VIDEO_IN_FOLDER, PLAY_LIST_VIDEO, PLAY_LIST_VIDEO_FOLDER,
         ROW_VIDEO, ITEM_ALL_VIDEO, &DiscView::OnQueryVideoList, &DiscView::m_bVideoDbDone,
         "OnHandleChangeToVideo",
         [](DiscViewController& controller) { controller.GotoSubList(PLAY_TYPE_VIDEO, ROOT_FOLDER); }},
        // Photos are announced by a format instead of a list, and without a log line.
        {PLAY_TYPE_PHOTO, MIXED_PHOTO, TXT_NO_PHOTO, VIEW_STATE_PHOTO_LIST, FTYPE_PICTURE,
         LIST_FROM_ALL_PHOTO, LIST_FROM_PHOTO_FOLDERS, LIST_FROM_PHOTO_IN_FOLDER, PLAY_LIST_PHOTO,
         PLAY_LIST_PHOTO_FOLDER, ROW_PICTURE, ITEM_ALL_PHOTO, &DiscView::OnQueryPictureList,
         &DiscView::m_bPhotoDbDone, nullptr,
         [](DiscViewController& controller) { controller.ChangeFormat(PLAY_TYPE_PHOTO); }},
    };
    return ROWS;
}

const DiscView::MediaType* DiscView::FindMediaType(int nType) {
    return FindRow(MediaTypes(), &MediaType::type, nType);
}
