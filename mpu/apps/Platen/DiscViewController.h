#pragma once

#include "ZMModel/CDiscData.h"
#include "ZMModel/DiscControlPPSModule.h"
#include "ZMModel/DiscDevicePPSModule.h"
#include "ZMModel/DiscMpegInfoPPSModule.h"
#include "ZMModel/DiscNowPlayingPPSModule.h"
#include "ZMModel/DiscPlayingPPSModule.h"
#include "ZMModel/DiscStatusPPSModule.h"
#include "ZMModel/DiscSystemPPSModule.h"
#include "ZMModel/DiscVideoCommandPPSModule.h"
#include "ZMModel/DiscVideoStatusPPSModule.h"
#include "ZMModel/ViewMessages.h"

#include "zmcar/PublicController.h"

#include <array>
#include <set>
#include <string>

/**
 * Stands between the views and the PPS objects: turns changed attributes into the state store's values and
 * view messages (monitor thread), and the views' wishes into player commands (their thread).
 */
class DiscViewController : public Oro::ZMCAR::PublicController {
public:
    /** View messages go to `pView`, the main view; what changes is written into `data` first. */
    DiscViewController(Oro::ZMCAR::IViewMessage* pView, CDiscData& data);
    ~DiscViewController() override;

    /** Opens all objects, also when one fails; true if all of them could be opened. */
    bool Init() override;
    /** Starts the monitor thread. */
    bool Start() override;
    bool Stop() override;
    bool Close() override;

    void OnAttributeChange(int key, pps_attrib_t* attr) override;

    /* Player commands: each writes one command and returns whether it could be written. */
    bool NextClip();
    bool PreviousClip();
    bool FastForward();
    bool FastBackward();
    bool PlayPause();
    bool SetShuffleMode(int mode);
    bool SetRepeatMode(int mode);
    bool RepeatAB();
    bool SelectAudioChannel();
    bool SelectMainSubAudio(); ///< the same command as SelectAudioChannel
    bool KeyAngle();
    bool Eject();
    bool SelectSubtitle();
    bool VCD_PBC();
    bool Zoom();
    bool ReturnToMenu();
    bool StopPlayBack();
    bool Pause();
    bool Play();
    bool ChangeFormat(int format);
    bool ReturnToTitle();
    bool KeyRotation();
    bool PlayTrack(int first, int second);
    bool PlayChapter(int chapter);
    bool PlayTitle(int title);
    bool Seek(int position);
    bool GotoSubList(int first, int second);
    bool RequestSource(int first, int second);
    bool SendTsPos(int x, int y);
    bool CheckPassword(int code);

    /* These write nothing and return true. */
    bool KeyLeft() { return true; }
    bool KeyRight() { return true; }
    bool KeyUp() { return true; }
    bool KeyDown() { return true; }
    bool KeySelect() { return true; }
    bool ReqPlaylist(int, int) { return true; }
    bool ReqPlaylistName(int, int, int) { return true; }

    /* Tell the rest of the head unit what plays; the views do so when the application is resumed. */
    bool PublishMediaInfo();
    bool PublishPlayID3();

    /* Messages between the views; always true. */
    bool OnMessageOSDReturn();
    bool OnMessageUpdateTime();
    bool OnMessageOSDGetCurTrack();
    bool OnMessageOSDGotoTrack(int track);

    /** Asks the video service to show (or stop) source `strSrcName` in a window of a window group. */
    bool OperateVideoCapture(bool bStart, const std::string& strWndGroupId, const std::string& strWndId,
                             const std::string& strSrcName);

private:
    void OnHandleAttrStatus(int result);
    void OnHandleAttrDevice(int result);
    void OnHandleAttrPlaying(int result);
    void OnHandleAttrMpegInfo(int result);
    void OnHandleAttrVideoStatus(int result);
    /** Sends the message, then publishes. */
    void React(const PPSReaction& reaction);
    bool SendCode(int nCode, int nParam = 0);
    /** In the order of the members, in which they are attached and closed. */
    std::array<DiscPPSModule*, 9> Modules();
    std::array<DiscPPSModule*, 5> MonitoredModules();

    std::set<DiscPPSModule*> m_setOpen; ///< those whose objects Init could open
    DiscStatusPPSModule m_status;
    DiscPlayingPPSModule m_playing;
    DiscMpegInfoPPSModule m_mpegInfo;
    DiscDevicePPSModule m_device;
    DiscControlPPSModule m_control;
    DiscVideoCommandPPSModule m_videoCommand;
    DiscVideoStatusPPSModule m_videoStatus;
    DiscSystemPPSModule m_system;
    DiscNowPlayingPPSModule m_nowPlaying;
    CDiscData m_discData; ///< comes and goes with the controller, unused: the modules share the one passed in
};
