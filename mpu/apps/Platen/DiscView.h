#pragma once

#include "DiscQDB.h"
#include "DiscViewIds.h"
#include "parts/NumberPad.h"
#include "zmcar/ViewUI.h"

#include <sys/time.h>

#include <span>
#include <string>

class CUIAnalysis;
class CUIWndMng;
class CUI_BtList;
class DiscOsdView;
class DiscViewController;
class SourceGroup;
struct T_PLAY_STATUS;

/**
 * The full-screen view of the disc player. It shows one page at a time; `m_uiCurState` says which family of
 * pages is current. View messages, launcher messages, timers, keys and touches arrive on the event thread,
 * where every operation runs but AttachControl, ViewInit, SetVoicePlayPar, SetWaitDeviceStateTimer and Close
 * (start-up and shut-down).
 */
class DiscView : public Oro::ZMCAR::ViewUI {
public:
    /** `name` is the view's name and the source name of video capture. */
    explicit DiscView(const std::string& name);
    ~DiscView() override;

    /** Gives the view its commands, timers and capture; without one it sends nothing. */
    void AttachControl(DiscViewController* controller);
    /** Sets the start values of the pages and opens the catalogue; once, after the resource has been loaded.
     */
    void ViewInit();
    /** A voice request given at start-up; carried out once music plays. */
    void SetVoicePlayPar(std::string song);
    /** No device report within 15 s counts as no disc. */
    void SetWaitDeviceStateTimer();
    /** Ends the catalogue worker, stops capture that is on, closes the framework's view. */
    bool Close() override;

    int OnUserMessage(APP_MSG_S* msg) override;
    void OnAppsMessage(APP_MSG_S* msg) override;
    void OnClick(CUIWndMng* wndMng, long wndId, long ctrlId, int btState) override;
    bool OnLButtonDown(int x, int y) override;
    bool OnLButtonUp(int x, int y) override;
    bool OnKey(int key, int state, int param) override;
    bool OnKeyboard(int nKey) override;
    void OnShow(int dwWndId, bool bShow, int flag) override;
    void OnClose() override {}
    int OnChildPost(const char* strChild) override;
    void OnListInfoMessage(CUIWndMng* wndMng, int nWndId, int kind, _tagList_Info* info) override;

private:
    friend struct DiscViewTest;

    enum class Message { Loading, NoDisc, Ejecting, RegionError };
    struct MessageRow;
    struct TimerRow;
    struct AppStatusRow;
    struct UserMessageRow;
    struct IndicatorRow;
    struct KeyRow;
    struct PageRow;
    struct ControlRow;

    /** Sends a player command; nothing without a controller. */
    template <class... Parameters, class... Arguments>
    void Send(bool (DiscViewController::*command)(Parameters...), Arguments... arguments) {
        if (m_pController) {
            (m_pController->*command)(arguments...);
        }
    }

    // Frame and pages (DiscView.cpp, DiscViewPages.cpp)
    void ToBeep();
    void TakeList(int nWndId, CUI_BtList*& list);
    void OnGotoAudioPlayPage();
    /** Shows a message on WND_DISC_LOADING, enters its state and starts its timer. */
    void ShowMessage(Message message);
    void ShowErrorPage();
    void DiscError();
    void DiscExit();
    void RegionError();
    void FillPage(int nWndId);
    void FillParkingPage();
    void FillListPage(int nWndId);
    /** The overlay, or null before it is joined. */
    DiscOsdView* Osd();
    /** Asks the launcher to bring an application to the front. */
    void QueryApplication(const char* name);
    void QueryHome();

    // Timers (DiscViewTimers.cpp)
    void SetDisplayOSDTimer();
    void SetDisplayPlayViewTimer();
    void SetDisplayNoDiscTimer();
    void SetLoadingTimer();
    void SetDisplaySrcTimer();
    void SetSimpleViewTimer() {}
    void OnGotoSampleView() {}
    void KillTimer(unsigned int id);
    void OnTimer(unsigned int id);
    void DisplayStateEnd();
    void DisplayOSDEnd();
    void OnTimerPlayView();
    void OnTimerNoDisc();
    void OnTimerWaitDeviceState();
    void OnTimerLoading();
    void OnTimerSource();

    // Launcher messages (DiscViewApps.cpp)
    void OnAppsMsgAppStatus(int status);
    void OnResume(const T_PLAY_STATUS& playStatus);
    void OnPause(const T_PLAY_STATUS& playStatus);
    void OnHideOnly(const T_PLAY_STATUS& playStatus);
    void OnQuit(const T_PLAY_STATUS& playStatus);
    void ResumePage();
    void RedrawOsd();
    void RequestDiscSource(const char* logName);

    // Disc state (DiscViewState.cpp, DiscViewPlay.cpp, DiscViewTitles.cpp, DiscViewTabs.cpp)
    void OnUserMsgPlayState();
    void OnUserMsgRootMenu();
    void OnUserMsgClipsType();
    void OnUserMsgMixedType();
    void OnUserMsgDeviceState();
    void OnUserMsgTrackInfo();
    void OnUserMsgPlayTime();
    void OnUserMsgID3();
    void OnCaptureStateChanged();
    void OnUserMsgOsdReturn();
    void OnUserMsgDiscState();
    void OnUserMsgErrorStatus();
    void OnUserMsgVideoMode();
    /** The first playing state after loading: to the page of the type. */
    void EnterPlayPage();
    void EnterVideoPage();
    /** From a video file or photo to its list; the overlay has been hidden. */
    void ReturnFromVideo(bool bDbDone);
    void ShowPlayButton(int shown, int hidden);
    void SkipUnreadable();
    void SetMediaTypeIcon(int nWndId);
    void SetShowLeftState(int nWndId, int n);
    void UpdateCurMusicTitle();
    void UpdateTitleRight(int nWndId);
    void UpdateMusicTitleRight(int nWndId);
    void UpdateVideoTitleRight(int nWndId);
    void UpdatePhotoTitleRight(int nWndId);
    /** The catalogue's name of the playing file; empty when it is not known. */
    std::string QueryFileName(int nFileType);
    void ShowFileTitle(int nWndId, int nItem, const std::string& name);
    void ShowTrackText();

    // File lists (DiscViewLists*.cpp)
    struct ListSource;
    struct MediaType;
    struct ListPage;
    struct ListControl;
    struct FileIds {
        int nFid;
        int nFolder;
    };
    enum class Menu { Closed, Open };
    static const ListSource* FindListSource(int nFrom);
    static std::span<const MediaType> MediaTypes();
    /** The row of a browsed or playing type; null for types without file lists. */
    static const MediaType* FindMediaType(int nType);
    void OnQueryAudioList();
    void OnQueryVideoList();
    void OnQueryPictureList();
    void OnQueryCurAudioList();
    void SetQueryWaitTimer();
    void FileQueryWait();
    void InsertUIListData(int nFrom);
    void OnFunc_ListJmp_UiFrom(int nFrom, bool bSel);
    void OnFunc_ListJump_Index(int nFrom, bool bSel);
    void OnHandle_ListDown(CUI_BtList* list);
    void OnHandle_ListUp(CUI_BtList* list);
    void OnHandleUIListClick(int nPlayType, int nUiFrom, int nLine);
    void OnHandleUIListClickAudio(int nUiFrom, int nLine);
    void OnHandleUIListClickVideo(int nUiFrom, int nLine);
    void OnHandleUIListClickPicture(int nUiFrom, int nLine);
    void OnHandleChangeToMusic();
    void OnHandleChangeToVideo();
    void OnHandleChangeToPhoto();
    void OnHandleUIReturnList();
    void OnUserMsgUpdateDb();
    void OnClickAudioListWnd(long nCtrlId);
    void OnClickCDListWnd(long nCtrlId);
    /** Stores, logs and sends a statement for the list of m_nCurListFrom, and starts the wait for its rows.
     */
    void SendQuery(const char* logName, const std::string& sql);
    void TakeFetchedRows();
    void InsertRows(const ListSource& source, CUI_BtList& list, int nCount);
    void HideListTips();
    void SetListTip(int nWndId, int nTextId);
    void DeleteRows(CUI_BtList* list);
    void MarkPlayingRow(CUI_BtList& list, int nRow);
    void UnmarkRows(CUI_BtList& list);
    void SelectRow(CUI_BtList& list, int nRow, int nTopIndex);
    /** False, and nRow as it was, without a list or a selection. */
    bool SelectedRow(CUI_BtList* list, int& nRow);
    void RedrawAll();
    FileIds ReadFileIds(const char* logName, int nUiFrom, int nLine);
    void PlayPacked(const char* logName, const FileIds& ids, int nKind);
    void ChangeToType(int nType);
    void ShowNoFiles(const MediaType& type);
    void ShowAllFiles(const MediaType& type);
    void ReturnToSearch();
    void OnClickListPage(const ListPage& page, long nCtrlId);
    void OnClickMediaRow();
    void OnClickFolderRow();
    void OnClickCDRow();
    void OnClickToPlaying(const ListPage& page);
    void OnClickAllFiles(const ListPage& page, long nCtrlId);
    void OnClickFolderMenu(const ListPage& page);
    void OnClickMenu(const ListPage& page, Menu menu);
    void OnClickGoto(const ListPage& page);
    void OnClickGotoPad(const ListPage& page);
    /** The top row of that page's list, apart for folders; nothing without the list. */
    void RememberTop(int nWndId);

    // Folders (DiscViewFolders.cpp, DiscViewFoldersMark.cpp)
    struct FolderMark;
    void OnQueryAllFolders();
    void OnQueryAudiosInFolder(int nFolderId);
    void OnQueryFolderList(int nFolderId);
    void OnQueryFolderList2(int nFolderId);
    void OnGotoFolderListPage(int nFolderId);
    void OnOpenFolder(int nListFrom, int nLine);
    void OnHandleUIReturnUpFolder(int nListFrom);
    bool OnFunc_FolderListJump_Index(int nFrom, bool bSel);
    void OnClickFolderListWnd(long nCtrlId);
    bool IsFolderEmpty(int nFileType, int nFolderId);
    void ShowFolderTitle(int nFileType, int nFolderId);
    void QuerySubFolders(const char* logName, int nFolderId, const char* order);
    int FindPlayingRow(const FolderMark& mark, CUI_BtList& list);
    void SelectWithoutPlaying(const FolderMark& mark, CUI_BtList& list);
    static int TopRowFor(int nRow, int nRemembered, int nMargin);

    // Search and voice (DiscViewSearch.cpp)
    void OnAppsMsgAppData(std::string& data);
    void OnHandleVoicePlay(std::string name);
    bool OnQuerySongName(std::string name);
    bool OnHandleQueryResult();
    void PlayNumber(long nNumber);
    void RequestVoicePlay();
    void PlayFirstMatch();

    // Number pad (DiscViewGoto.cpp)
    void ShowGotoView();
    void HideGotoView();
    void DealInputNum();
    void OnClickGotoWnd(long ctrlId);
    int GotoTotal() const;
    void SendGoto(int nNumber);

    // Keys and touch (DiscViewKeys.cpp, DiscViewListKeys.cpp, DiscViewTouch.cpp)
    void OnKey_K_Up();
    void OnKey_K_Down();
    void OnKey_K_Left();
    void OnKey_K_Right();
    void OnKey_K_Enter();
    void OnKey_K_Return();
    void OnKey_K_Encoder_Inc();
    void OnKey_K_Encoder_Dec();
    /** The list of a page; null when it has none. */
    CUI_BtList* ListOf(int nWndId);
    /** The list that the keys move; null when the source has none. */
    CUI_BtList* CurrentList();
    void SetOsdKeyType(int keyType);
    void OnClickLoadingWnd(long nCtrlId);
    void OnClickErrorWnd(long nCtrlId);
    void OnClickAudioPlay(long nCtrlId, int nBtState);
    void OnClickAudioPlayWnd(long nCtrlId);
    void OnClickVideoWnd(long nCtrlId);
    void OnClickDiscMenu();
    void OnClickPictureWnd(long nCtrlId);
    void OnClickSrcGroup(long nCtrlId);
    void OnSwipe();
    SourceGroup Sources();

    // Video window (DiscViewVideo.cpp)
    void GotoVideoPage(int nType);
    void ManipulateVideoWin(bool bShow, int x, int y, int w, int h);
    void SetVisibleVideo(bool bShow);
    void SetVisibleOsd(bool bShow);
    void HideOsdPad();
    void HideOsdAndPad();
    void WithdrawOsd();
    void OperateCapture(bool bStart);

    // Status indicators and parking (DiscViewStatus.cpp)
    void UpdateDateTime(bool bRedraw);
    void UpdateBTStatus(bool bRedraw);
    void UpdateMuteStatus(bool bRedraw);
    void UpdateCarTemp(bool bRedraw);
    void OnAppsMsgDevStatus(int devId, int value);
    void OnParkingChanged(bool bParked);
    bool IsVideoState() const {
        return m_uiCurState == VIEW_STATE_VIDEO_PLAY || m_uiCurState == VIEW_STATE_PHOTO_PLAY;
    }
    void OnGotoParkingView();
    void OnHideParkingView();
    void ApplyParking();
    void OnClickParkingWnd(long ctrlId);
    void LeaveParkingPage();

    DiscViewController* m_pController = nullptr;
    CUIAnalysis* m_pUIAnalysis = nullptr;
    CUIWndMng* m_pWndMng = nullptr;
    DiscQDB m_discDb;
    CUI_BtList* m_pAudioList = nullptr;       ///< of WND_MEDIA_LIST
    CUI_BtList* m_pFolderAudioList = nullptr; ///< of WND_FOLDER_LIST
    CUI_BtList* m_pCDList = nullptr;          ///< of WND_CD_LIST

    struct Point {
        int x = 0;
        int y = 0;
    };
    Point m_ptLButtonUp;
    Point m_ptLButtonDown;
    int m_nLastBtState = 0; ///< of the last click on WND_AUDIO_PLAY

    int m_nCurWndId = 0;
    int m_uiCurState = VIEW_STATE_LOADING;
    int m_nCurPlayType = PLAY_TYPE_UNKNOWN;
    int m_nCurType = PLAY_TYPE_UNKNOWN; ///< type whose list is browsed
    int m_nMixedType = 0;               ///< MIXED_... bits

    int m_nCurListFrom = LIST_FROM_ALL_AUDIO; ///< source of the list on screen
    int m_nPlayListFrom = PLAY_LIST_MUSIC;    ///< list a play page returns to
    int m_nClickFolderId = 1;                 ///< folder last opened
    int m_nListTopIndex = -1;                 ///< remembered when a list is left
    int m_nFolderTopIndex = -1;
    int m_nFolderCurSel = -1;
    bool m_bNoFileOfType = false;
    bool m_bSelPlayingRow = false; ///< the next marking of the playing row also selects it
    std::string m_szListSql;       ///< statement last sent
    int m_nQueWaitTime = 0;        ///< ticks spent waiting for the query
    bool m_bQueryWaiting = false;
    bool m_bAudioDbDone = false; ///< the catalogue of that type is complete
    bool m_bVideoDbDone = false;
    bool m_bPhotoDbDone = false;

    char m_szSearch[260] = {}; ///< keyboard value
    bool m_bVoicePlayPending = false;
    std::string m_strVoicePlay;
    NumberPad m_pad;
    int m_nStateBehindGoto = VIEW_STATE_LOADING; ///< state of the page that the pad lies over

    bool m_bVideoAllowed = true; ///< false while the car moves
    bool m_bAppPaused = false;   ///< paused or show-only'd by the launcher
    bool m_bAppHidden = false;
    int m_nPlayStatusBeforePause = 0;
    timeval m_tvLastPause = {};
    bool m_bSourceRequested = false;
    bool m_bDiscWasOut = false; ///< the last report of the drive said so
    bool m_bShown = false;      ///< resumed at least once

    bool m_bVideoOsd = false; ///< the overlay is shown
    bool m_bVideoIsVisible = false;
    std::string m_strViewName;
    std::string m_strVideoWin; ///< child window of the video
};
