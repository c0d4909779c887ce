#pragma once

#include "DiscQDB.h"
#include "disc/ErrorReports.h"
#include "disc/PlayReports.h"
#include "disc/TrackReports.h"
#include "disc/TypeReports.h"
#include "input/DirectionKeys.h"
#include "input/GotoPage.h"
#include "input/HardKeys.h"
#include "input/ListClicks.h"
#include "input/NoticeTouch.h"
#include "input/PlayPageTouch.h"
#include "input/RowClicks.h"
#include "input/TouchPoints.h"
#include "input/VideoTouch.h"
#include "launcher/LauncherStatus.h"
#include "launcher/SourceRequest.h"
#include "launcher/VehicleStatus.h"
#include "lists/BackToPlaying.h"
#include "lists/Folders.h"
#include "lists/ListChange.h"
#include "lists/ListControls.h"
#include "lists/ListFill.h"
#include "lists/ListMenu.h"
#include "lists/ListPage.h"
#include "lists/ListQuery.h"
#include "lists/ListState.h"
#include "lists/PlayingRow.h"
#include "lists/ReturnToList.h"
#include "lists/RowPlay.h"
#include "pages/Notices.h"
#include "pages/PageState.h"
#include "pages/ParkingGate.h"
#include "pages/PlayPage.h"
#include "pages/PlayingTitle.h"
#include "pages/SourcePopup.h"
#include "pages/StatusIndicators.h"
#include "parts/ControlLink.h"
#include "parts/Widgets.h"
#include "search/VoiceSearch.h"
#include "video/OverlayWindow.h"
#include "video/VideoWindow.h"
#include "zmcar/ViewUI.h"

#include <string>

/** The objects of the main view, in the order of their making: each knows only those before it. */
struct DiscViewParts {
    DiscViewParts(Oro::ZMCAR::ViewUI& view, const std::string& name, CDiscData& store)
        : data(store), m_discDb(store), overlay(view, control), video(view, control, name),
          indicators(widgets, control, state), sources(widgets, control, state),
          notices(view, widgets, control, state, overlay, video),
          films(view, data, widgets, state, overlay, video), title(data, m_discDb, widgets, state),
          playPage(view, data, widgets, state, title), listMenu(widgets, state),
          playingRow(data, m_discDb, widgets, lists, listControls),
          listPage(widgets, state, lists, listMenu, title, playingRow),
          listFill(m_discDb, lists, listControls, listMenu, playingRow),
          listQuery(view, m_discDb, control, state, lists, listControls, listFill),
          rowPlay(data, m_discDb, control, state, playPage, films),
          folders(m_discDb, widgets, control, state, lists, listControls, listMenu, listQuery, rowPlay),
          listChange(view, data, control, state, lists, listControls, listMenu, listFill, listQuery, folders),
          backToPlaying(data, state, lists, listControls, playPage, films),
          returnToList(control, state, lists, overlay, video, listChange),
          search(data, m_discDb, control, state, lists, playPage, films, rowPlay, listChange),
          playReports(data, widgets, control, state, overlay, video, notices, playPage, films, returnToList,
                      search),
          typeReports(data, state, listMenu), trackReports(data, widgets, state, lists, playPage, listPage),
          errorReports(data, control, state, notices), sourceRequest(data, m_discDb, control, state, notices),
          launcher(data, m_discDb, widgets, control, state, overlay, video, films, sources, sourceRequest,
                   playReports),
          vehicle(indicators, overlay, films), playPageTouch(control, points, listChange, sources),
          videoTouch(data, control, state, points, overlay),
          noticeTouch(control, state, films, returnToList, sources),
          gotoPage(view, data, widgets, control, state, playPage, films, rowPlay, listChange, sources),
          rowClicks(state, lists, listControls, rowPlay, folders),
          listClicks(data, control, state, lists, listMenu, folders, listChange, backToPlaying, gotoPage,
                     rowClicks, sources),
          directionKeys(control, state, lists, listControls, listChange, returnToList, listClicks),
          hardKeys(data, control, state, lists, overlay, gotoPage, directionKeys) {}

    CDiscData& data;
    DiscQDB m_discDb;
    ControlLink control;
    Widgets widgets;
    PageState state;
    ListState lists;
    ListControls listControls;
    TouchPoints points;

    OverlayWindow overlay;
    VideoWindow video;

    StatusIndicators indicators;
    SourcePopup sources;
    Notices notices;
    ParkingGate films;
    PlayingTitle title;
    PlayPage playPage;

    ListMenu listMenu;
    PlayingRow playingRow;
    ListPage listPage;
    ListFill listFill;
    ListQuery listQuery;
    RowPlay rowPlay;
    Folders folders;
    ListChange listChange;
    BackToPlaying backToPlaying;
    ReturnToList returnToList;

    VoiceSearch search;

    PlayReports playReports;
    TypeReports typeReports;
    TrackReports trackReports;
    ErrorReports errorReports;

    SourceRequest sourceRequest;
    LauncherStatus launcher;
    VehicleStatus vehicle;

    PlayPageTouch playPageTouch;
    VideoTouch videoTouch;
    NoticeTouch noticeTouch;
    GotoPage gotoPage;
    RowClicks rowClicks;
    ListClicks listClicks;
    DirectionKeys directionKeys;
    HardKeys hardKeys;
};
