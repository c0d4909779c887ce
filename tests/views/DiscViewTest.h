#pragma once

#include "DiscView.h"
#include "DiscViewParts.h"
#include "tests/support/Harness.h"

/**
 * What of the main view neither screen, log nor public operations show, and states that the system itself
 * never enters. Each call runs on the view's event thread.
 */
struct DiscViewTest {
private:
    DiscViewParts& parts() { return *m_unit.view().m_pParts; }

    template <class Read>
    auto get(Read read) {
        decltype(read(parts())) value{};
        m_unit.onViewThread([&] { value = read(parts()); });
        return value;
    }
    template <class Write>
    void set(Write write) {
        m_unit.onViewThread([&] { write(parts()); });
    }

public:
    explicit DiscViewTest(zm::test::Unit& unit) : m_unit(unit) {}

    int state() {
        return get([](DiscViewParts& parts) { return parts.state.m_uiCurState; });
    }
    void setState(int state) {
        set([=](DiscViewParts& parts) { parts.state.m_uiCurState = static_cast<ViewState>(state); });
    }
    int page() {
        return get([](DiscViewParts& parts) { return parts.state.m_nCurWndId; });
    }
    int playType() {
        return get([](DiscViewParts& parts) { return parts.state.m_nCurPlayType; });
    }
    int browsedType() {
        return get([](DiscViewParts& parts) { return parts.state.m_nCurType; });
    }
    void setBrowsedType(int type) {
        set([=](DiscViewParts& parts) { parts.state.m_nCurType = static_cast<PlayType>(type); });
    }
    int mixedType() {
        return get([](DiscViewParts& parts) { return parts.state.m_nMixedType; });
    }
    int listFrom() {
        return get([](DiscViewParts& parts) { return parts.lists.m_nCurListFrom; });
    }
    void setListFrom(int source) {
        set([=](DiscViewParts& parts) { parts.lists.m_nCurListFrom = source; });
    }
    int playListFrom() {
        return get([](DiscViewParts& parts) { return parts.state.m_nPlayListFrom; });
    }
    int listTopIndex() {
        return get([](DiscViewParts& parts) { return parts.lists.m_nListTopIndex; });
    }
    void setListTopIndex(int row) {
        set([=](DiscViewParts& parts) { parts.lists.m_nListTopIndex = row; });
    }
    int folderTopIndex() {
        return get([](DiscViewParts& parts) { return parts.lists.m_nFolderTopIndex; });
    }
    void setFolderTopIndex(int row) {
        set([=](DiscViewParts& parts) { parts.lists.m_nFolderTopIndex = row; });
    }
    int folderCurSel() {
        return get([](DiscViewParts& parts) { return parts.lists.m_nFolderCurSel; });
    }
    void setFolderCurSel(int row) {
        set([=](DiscViewParts& parts) { parts.lists.m_nFolderCurSel = row; });
    }
    void setPlayListFrom(int list) {
        set([=](DiscViewParts& parts) { parts.state.m_nPlayListFrom = static_cast<PlayList>(list); });
    }
    int clickFolderId() {
        return get([](DiscViewParts& parts) { return parts.lists.m_nClickFolderId; });
    }
    bool followsPlaying() {
        return get([](DiscViewParts& parts) { return parts.lists.m_bSelPlayingRow; });
    }
    void setFollowsPlaying(bool follows) {
        set([=](DiscViewParts& parts) { parts.lists.m_bSelPlayingRow = follows; });
    }
    bool noFileOfType() {
        return get([](DiscViewParts& parts) { return parts.state.m_bNoFileOfType; });
    }
    bool videoAllowed() {
        return get([](DiscViewParts& parts) { return parts.films.IsVideoAllowed(); });
    }
    bool videoIsVisible() {
        return get([](DiscViewParts& parts) { return parts.video.IsVisible(); });
    }
    bool overlayShown() {
        return get([](DiscViewParts& parts) { return parts.overlay.IsShown(); });
    }
    bool paused() {
        return get([](DiscViewParts& parts) { return parts.state.m_bAppPaused; });
    }
    bool hidden() {
        return get([](DiscViewParts& parts) { return parts.launcher.m_bAppHidden; });
    }
    int statusBeforePause() {
        return get([](DiscViewParts& parts) { return parts.launcher.m_nPlayStatusBeforePause; });
    }
    bool sourceRequested() {
        return get([](DiscViewParts& parts) { return parts.sourceRequest.m_bSourceRequested; });
    }
    void setSourceRequested(bool requested) {
        set([=](DiscViewParts& parts) { parts.sourceRequest.m_bSourceRequested = requested; });
    }
    /** As before the launcher's first resume. */
    void forgetShown() {
        set([=](DiscViewParts& parts) { parts.launcher.m_bShown = false; });
    }
    bool voicePlayPending() {
        return get([](DiscViewParts& parts) { return parts.search.m_bVoicePlayPending; });
    }
    std::string voicePlay() {
        return get([](DiscViewParts& parts) { return parts.search.m_strVoicePlay; });
    }

    void setStatusBeforePause(int status) {
        set([=](DiscViewParts& parts) { parts.launcher.m_nPlayStatusBeforePause = status; });
    }

    /** The last pause by the launcher was that long ago. */
    void ageLastPause(std::chrono::milliseconds age) {
        const std::chrono::microseconds then = std::chrono::duration_cast<std::chrono::microseconds>(
                                                   std::chrono::system_clock::now().time_since_epoch()) -
                                               age;
        set([=](DiscViewParts& parts) {
            parts.launcher.m_tvLastPause = timeval{then.count() / 1000000, then.count() % 1000000};
        });
    }
    /** What the worker says about itself. */
    void setCatalogueFinished(bool finished) {
        m_unit.onViewThread([this, finished] { parts().catalogue.SetFinishFlag(finished); });
    }
    void waitForQuery() {
        m_unit.onViewThread([this] { parts().listQuery.SetQueryWaitTimer(); });
    }
    void insertRows(int source) {
        m_unit.onViewThread([this, source] { parts().listFill.InsertUIListData(source); });
    }
    void clickRow(int playType, int source, int line) {
        m_unit.onViewThread([=, this] { parts().rowPlay.OnHandleUIListClick(playType, source, line); });
        m_unit.settle();
    }
    void queryFolderList(int folder) {
        m_unit.onViewThread([this, folder] { parts().folders.OnQueryFolderList(folder); });
        m_unit.settle();
    }
    void queryFolderList2(int folder) {
        m_unit.onViewThread([this, folder] { parts().folders.OnQueryFolderList2(folder); });
        m_unit.settle();
    }
    void queryAllFolders() {
        m_unit.onViewThread([this] { parts().folders.OnQueryAllFolders(); });
        m_unit.settle();
    }
    void gotoFolder(int folder) {
        m_unit.onViewThread([this, folder] { parts().folders.OnGotoFolderListPage(folder); });
        m_unit.settle();
    }
    void openFolder(int source, int line) {
        m_unit.onViewThread([=, this] { parts().folders.OnOpenFolder(source, line); });
        m_unit.settle();
    }
    /** The view of a resource without list controls. */
    void dropLists() {
        set([](DiscViewParts& parts) { parts.listControls = ListControls(); });
    }
    void showLeftState(int window, int source) {
        m_unit.onViewThread([this, window, source] { parts().listMenu.SetShowLeftState(window, source); });
    }
    void gotoVideoPage(int type) {
        m_unit.onViewThread([this, type] { parts().films.GotoVideoPage(static_cast<PlayType>(type)); });
        m_unit.settle();
    }
    void placeVideo(bool show, int x, int y, int w, int h) {
        m_unit.onViewThread([=, this] { parts().video.ManipulateVideoWin(show, x, y, w, h); });
        m_unit.settle();
    }
    bool jumpFolderList(int source, bool select) {
        bool found = true;
        m_unit.onViewThread([&] { found = parts().playingRow.OnFunc_FolderListJump_Index(source, select); });
        return found;
    }
    /** A view that has lost its controller. */
    void withoutController(const std::function<void(DiscView&)>& task) {
        m_unit.onViewThread([&] {
            DiscView& view = m_unit.view();
            DiscViewController* controller = parts().control.Controller();
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
        m_unit.onViewThread([&] { parts().search.OnAppsMsgAppData(data); });
    }
    void startSimpleView() {
        m_unit.onViewThread([this] {
            m_unit.view().SetSimpleViewTimer();
            m_unit.view().OnGotoSampleView();
        });
    }
    void clickPicture(int control) {
        m_unit.onViewThread([this, control] { parts().videoTouch.OnClickPictureWnd(control); });
        m_unit.settle();
    }

private:
    zm::test::Unit& m_unit;
};
