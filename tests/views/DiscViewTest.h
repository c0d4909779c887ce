#pragma once

#include "DiscView.h"
#include "tests/support/Harness.h"

/**
 * What of the main view neither screen, log nor public operations show, and states that the system itself
 * never enters. Each call runs on the view's event thread.
 */
struct DiscViewTest {
    explicit DiscViewTest(zm::test::Unit& unit) : m_unit(unit) {}

    int state() { return get(&DiscView::m_uiCurState); }
    void setState(int state) { set(&DiscView::m_uiCurState, state); }
    int page() { return get(&DiscView::m_nCurWndId); }
    int playType() { return get(&DiscView::m_nCurPlayType); }
    int browsedType() { return get(&DiscView::m_nCurType); }
    void setBrowsedType(int type) { set(&DiscView::m_nCurType, type); }
    int mixedType() { return get(&DiscView::m_nMixedType); }
    int listFrom() { return get(&DiscView::m_nCurListFrom); }
    void setListFrom(int source) { set(&DiscView::m_nCurListFrom, source); }
    int playListFrom() { return get(&DiscView::m_nPlayListFrom); }
    int listTopIndex() { return get(&DiscView::m_nListTopIndex); }
    void setListTopIndex(int row) { set(&DiscView::m_nListTopIndex, row); }
    int folderTopIndex() { return get(&DiscView::m_nFolderTopIndex); }
    void setFolderTopIndex(int row) { set(&DiscView::m_nFolderTopIndex, row); }
    int folderCurSel() { return get(&DiscView::m_nFolderCurSel); }
    void setFolderCurSel(int row) { set(&DiscView::m_nFolderCurSel, row); }
    void setPlayListFrom(int list) { set(&DiscView::m_nPlayListFrom, list); }
    int clickFolderId() { return get(&DiscView::m_nClickFolderId); }
    bool followsPlaying() { return get(&DiscView::m_bSelPlayingRow); }
    void setFollowsPlaying(bool follows) { set(&DiscView::m_bSelPlayingRow, follows); }
    bool noFileOfType() { return get(&DiscView::m_bNoFileOfType); }
    bool videoAllowed() { return get(&DiscView::m_bVideoAllowed); }
    bool videoIsVisible() { return get(&DiscView::m_bVideoIsVisible); }
    bool overlayShown() { return get(&DiscView::m_bVideoOsd); }
    bool paused() { return get(&DiscView::m_bAppPaused); }
    bool hidden() { return get(&DiscView::m_bAppHidden); }
    int statusBeforePause() { return get(&DiscView::m_nPlayStatusBeforePause); }
    bool sourceRequested() { return get(&DiscView::m_bSourceRequested); }
    void setSourceRequested(bool requested) { set(&DiscView::m_bSourceRequested, requested); }
    /** As before the launcher's first resume. */
    void forgetShown() { set(&DiscView::m_bShown, false); }
    bool voicePlayPending() { return get(&DiscView::m_bVoicePlayPending); }
    std::string voicePlay() { return get(&DiscView::m_strVoicePlay); }

    void setStatusBeforePause(int status) { set(&DiscView::m_nPlayStatusBeforePause, status); }

    /** The last pause by the launcher was that long ago. */
    void ageLastPause(std::chrono::milliseconds age) {
        const std::chrono::microseconds then = std::chrono::duration_cast<std::chrono::microseconds>(
                                                   std::chrono::system_clock::now().time_since_epoch()) -
                                               age;
        set(&DiscView::m_tvLastPause, timeval{then.count() / 1000000, then.count() % 1000000});
    }
    /** What the worker says about itself. */
    void setCatalogueFinished(bool finished) {
        m_unit.onViewThread([this, finished] { m_unit.view().m_discDb.SetFinishFlag(finished); });
    }
    void waitForQuery() {
        m_unit.onViewThread([this] { m_unit.view().SetQueryWaitTimer(); });
    }
    void insertRows(int source) {
        m_unit.onViewThread([this, source] { m_unit.view().InsertUIListData(source); });
    }
    void clickRow(int playType, int source, int line) {
        m_unit.onViewThread([=, this] { m_unit.view().OnHandleUIListClick(playType, source, line); });
        m_unit.settle();
    }
    void queryFolderList(int folder) {
        m_unit.onViewThread([this, folder] { m_unit.view().OnQueryFolderList(folder); });
        m_unit.settle();
    }
    void queryFolderList2(int folder) {
        m_unit.onViewThread([this, folder] { m_unit.view().OnQueryFolderList2(folder); });
        m_unit.settle();
    }
    void queryAllFolders() {
        m_unit.onViewThread([this] { m_unit.view().OnQueryAllFolders(); });
        m_unit.settle();
    }
    void gotoFolder(int folder) {
        m_unit.onViewThread([this, folder] { m_unit.view().OnGotoFolderListPage(folder); });
        m_unit.settle();
    }
    void openFolder(int source, int line) {
        m_unit.onViewThread([=, this] { m_unit.view().OnOpenFolder(source, line); });
        m_unit.settle();
    }
    /** The view of a resource without list controls. */
    void dropLists() {
        for (CUI_BtList* DiscView::*list :
             {&DiscView::m_pAudioList, &DiscView::m_pFolderAudioList, &DiscView::m_pCDList}) {
            set(list, static_cast<CUI_BtList*>(nullptr));
        }
    }
    void showLeftState(int window, int source) {
        m_unit.onViewThread([this, window, source] { m_unit.view().SetShowLeftState(window, source); });
    }
    void gotoVideoPage(int type) {
        m_unit.onViewThread([this, type] { m_unit.view().GotoVideoPage(type); });
        m_unit.settle();
    }
    void placeVideo(bool show, int x, int y, int w, int h) {
        m_unit.onViewThread([=, this] { m_unit.view().ManipulateVideoWin(show, x, y, w, h); });
        m_unit.settle();
    }
    bool jumpFolderList(int source, bool select) {
        bool found = true;
        m_unit.onViewThread([&] { found = m_unit.view().OnFunc_FolderListJump_Index(source, select); });
        return found;
    }
    /** A view that has lost its controller. */
    void withoutController(const std::function<void(DiscView&)>& task) {
        m_unit.onViewThread([&] {
            DiscView& view = m_unit.view();
            DiscViewController* controller = view.m_pController;
            view.AttachControl(nullptr);
            task(view);
            view.AttachControl(controller);
        });
        m_unit.settle();
    }
    void clickWithoutController(int window, int control) {
        withoutController([&](DiscView& view) { view.OnClick(nullptr, window, control, BT_STATE_RELEASED); });
    }
    void appData(std::string data) {
        m_unit.onViewThread([&] { m_unit.view().OnAppsMsgAppData(data); });
    }
    void startSimpleView() {
        m_unit.onViewThread([this] {
            m_unit.view().SetSimpleViewTimer();
            m_unit.view().OnGotoSampleView();
        });
    }
    void clickPicture(int control) {
        m_unit.onViewThread([this, control] { m_unit.view().OnClickPictureWnd(control); });
        m_unit.settle();
    }

private:
    template <class T>
    T get(T DiscView::*member) {
        T value{};
        m_unit.onViewThread([&] { value = m_unit.view().*member; });
        return value;
    }
    template <class T>
    void set(T DiscView::*member, T value) {
        m_unit.onViewThread([&] { m_unit.view().*member = value; });
    }

    zm::test::Unit& m_unit;
};
