#include "StartUp.h"

#include "DiscOsdView.h"
#include "DiscView.h"
#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "Log.h"
#include "ZMPath.h"

#include <cstdio>
#include <unistd.h>

namespace {

constexpr const char* VIEW_RESOURCE = "DISC.zmrc_device";
constexpr const char* OSD_RESOURCE = "OVERLAY.zmrc_device";
constexpr const char* MAKER = "zelmar";
constexpr int OSD_ORDER = 3;
constexpr int MONITORS[] = {1, 4, 2};
/** The function that log lines of the start-up name. */
constexpr const char* FUNC = "main";

bool StartUpError(const char* text) {
    LOGBASE(LOG_LEV_ERROR, FUNC, "%s", text);
    return false;
}

bool InitMainView(DiscView& app, const StartUpArguments& arguments) {
    const char* rccPath = Oro::ZMCAR::GetZMRCCPath();
    const char* fontPath = Oro::ZMCAR::GetZMFontPath();
    char szGroup[260];
    std::snprintf(szGroup, sizeof szGroup, "1-%d-%s-%s", static_cast<int>(getpid()), MAKER,
                  arguments.group.c_str());
    LOGBASE(LOG_LEV_TRACE, FUNC, "%s, %s, %s, %s, %s, %d, %d\n", szGroup, MAIN_VIEW_NAME, VIEW_RESOURCE,
            rccPath, fontPath, SCREEN_WIDTH, SCREEN_HEIGHT);
    if (!app.Init(rccPath, MAIN_VIEW_NAME, VIEW_RESOURCE, szGroup, fontPath, SCREEN_WIDTH, SCREEN_HEIGHT)) {
        return StartUpError("==========view init error==========\n");
    }
    LOGBASE(LOG_LEV_TRACE, FUNC, "theApp.ViewInit\n");
    app.ViewInit();
    if (arguments.bSongGiven) {
        app.SetVoicePlayPar(arguments.song);
    }
    return true;
}

bool InitOverlay(DiscView& app, DiscOsdView& osd) {
    LOGBASE(LOG_LEV_TRACE, FUNC, "theOsd.Init\n");
    char szOsdPath[260] = {};
    std::snprintf(szOsdPath, sizeof szOsdPath, "%s%s", Oro::ZMCAR::GetZMRCCPath(), OSD_RESOURCE);
    if (!osd.Init(OSD_VIEW_NAME, szOsdPath, Oro::ZMCAR::GetZMFontPath(), SCREEN_WIDTH, SCREEN_HEIGHT)) {
        return StartUpError("==========osdview init error==========\n");
    }
    LOGBASE(LOG_LEV_TRACE, FUNC, "theOsd.ViewInit\n");
    osd.ViewInit();
    LOGBASE(LOG_LEV_TRACE, FUNC, "theApp.JoinView\n");
    if (!app.JoinView(&osd, OSD_VIEW_NAME, OSD_ORDER)) {
        return StartUpError("==========osd joinview error==========\n");
    }
    return true;
}

void StartController(DiscViewController& controller) {
    LOGBASE(LOG_LEV_TRACE, FUNC, "viewController.Init\n");
    controller.Init(); // a PPS object that cannot be opened does not stop the start-up
    controller.SetAppName(MAIN_VIEW_NAME);
    for (int nMonitor : MONITORS) {
        controller.StartMonitor(nMonitor);
    }
    controller.Start();
}

bool Begin(DiscView& app, DiscOsdView& osd, DiscViewController& controller,
           const StartUpArguments& arguments) {
    app.AttachControl(&controller);
    osd.AttachControl(&controller);
    app.MaskSignals(); // before the threads start that do not do it themselves
    LOGBASE(LOG_LEV_TRACE, FUNC, "theApp.Init\n");
    if (!InitMainView(app, arguments) || !InitOverlay(app, osd)) {
        return false;
    }
    StartController(controller);
    app.SetWaitDeviceStateTimer();

    LOGBASE(LOG_LEV_TRACE, FUNC, "---------StartEventLoop-----------\n");
    if (!app.StartEventLoop()) {
        return StartUpError("==========StartEventLoop error==========\n");
    }
    app.ShowWnd(WND_DISC_LOADING, true, 0);
    osd.ShowWnd(OSD_WND_GOTO, true, 0);
    return osd.EnableAlphaBlending(true);
}

} // namespace

bool StartUp(DiscView& app, DiscOsdView& osd, DiscViewController& controller,
             const StartUpArguments& arguments) {
    const bool bRuns = Begin(app, osd, controller, arguments);
    if (!bRuns) {
        app.ViewBase::Close();
    }
    return bRuns;
}

bool ShutDown(DiscView& app, DiscViewController& controller) {
    return app.Close() && controller.Stop() && controller.Close();
}
