#include "Platen.h"

#include "DiscOsdView.h"
#include "DiscView.h"
#include "DiscViewController.h"
#include "Log.h"
#include "Options.h"
#include "ZMPath.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

constexpr const char* BUILD_DATE = "Sep  9 2015";
constexpr const char* BUILD_TIME = "10:08:13";
constexpr const char* VIEW_NAME = "zmdisc";
constexpr const char* VIEW_RESOURCE = "DISC.zmrc_device";
constexpr const char* OSD_NAME = "Disc_osd";
constexpr const char* OSD_RESOURCE = "OVERLAY.zmrc_device";
constexpr const char* MAKER = "zelmar";
constexpr int SCREEN_WIDTH = 800;
constexpr int SCREEN_HEIGHT = 480;
constexpr int OSD_ORDER = 3;
constexpr int MAIN_WINDOW = 1;
constexpr int OSD_WINDOW = 20;
constexpr int MONITORS[] = {1, 4, 2};
/** The function that log lines of the start-up name. */
constexpr const char* FUNC = "main";

bool StartUpError(const char* text) {
    LOGBASE(LOG_LEV_ERROR, FUNC, "%s", text);
    return false;
}

/** Initialises and starts everything up to the shown windows; false (logged where it is told) at the first
 * failure. */
bool StartUp(DiscView& app, DiscOsdView& osd, DiscViewController& controller, const char* group, bool bSong,
             const std::string& song) {
    const char* rccPath = Oro::ZMCAR::GetZMRCCPath();
    const char* fontPath = Oro::ZMCAR::GetZMFontPath();
    char szGroup[260];
    std::snprintf(szGroup, sizeof szGroup, "1-%d-%s-%s", static_cast<int>(getpid()), MAKER, group);
    LOGBASE(LOG_LEV_TRACE, FUNC, "%s, %s, %s, %s, %s, %d, %d\n", szGroup, VIEW_NAME, VIEW_RESOURCE, rccPath,
            fontPath, SCREEN_WIDTH, SCREEN_HEIGHT);
    if (!app.Init(rccPath, VIEW_NAME, VIEW_RESOURCE, szGroup, fontPath, SCREEN_WIDTH, SCREEN_HEIGHT)) {
        return StartUpError("==========view init error==========\n");
    }
    LOGBASE(LOG_LEV_TRACE, FUNC, "theApp.ViewInit\n");
    app.ViewInit();
    if (bSong) {
        app.SetVoicePlayPar(song);
    }

    LOGBASE(LOG_LEV_TRACE, FUNC, "theOsd.Init\n");
    char szOsdPath[260] = {};
    std::snprintf(szOsdPath, sizeof szOsdPath, "%s%s", rccPath, OSD_RESOURCE);
    if (!osd.Init(OSD_NAME, szOsdPath, fontPath, SCREEN_WIDTH, SCREEN_HEIGHT)) {
        return StartUpError("==========osdview init error==========\n");
    }
    LOGBASE(LOG_LEV_TRACE, FUNC, "theOsd.ViewInit\n");
    osd.ViewInit();
    LOGBASE(LOG_LEV_TRACE, FUNC, "theApp.JoinView\n");
    if (!app.JoinView(&osd, OSD_NAME, OSD_ORDER)) {
        return StartUpError("==========osd joinview error==========\n");
    }

    LOGBASE(LOG_LEV_TRACE, FUNC, "viewController.Init\n");
    controller.Init(); // a PPS object that cannot be opened does not stop the start-up
    controller.SetAppName(VIEW_NAME);
    for (int nMonitor : MONITORS) {
        controller.StartMonitor(nMonitor);
    }
    controller.Start();
    app.SetWaitDeviceStateTimer();

    LOGBASE(LOG_LEV_TRACE, FUNC, "---------StartEventLoop-----------\n");
    if (!app.StartEventLoop()) {
        return StartUpError("==========StartEventLoop error==========\n");
    }
    app.ShowWnd(MAIN_WINDOW, true, 0);
    osd.ShowWnd(OSD_WINDOW, true, 0);
    return osd.EnableAlphaBlending(true);
}

} // namespace

int PlatenMain(int argc, char** argv) {
    if (argc <= 1) {
        usage();
        std::exit(0);
    }
    get_options(argc, argv);

    std::string strViewName = VIEW_NAME;
    std::string strSong;
    bool bSong = get_song(argc, argv, strSong);
    LOGBASE(LOG_LEV_BANNER, FUNC, "\n\n----------------%s %s : %s %s main begin --------------------\n\n",
            APP_NAME, APP_VERSION, BUILD_DATE, BUILD_TIME);

    DiscView theApp(strViewName);
    DiscOsdView theOsd;
    DiscViewController viewController(&theApp);
    theApp.AttachControl(&viewController);
    theOsd.AttachControl(&viewController);
    theApp.MaskSignals(); // before the threads start that do not do it themselves
    LOGBASE(LOG_LEV_TRACE, FUNC, "theApp.Init\n");

    if (!StartUp(theApp, theOsd, viewController, argv[1], bSong, strSong)) {
        // The event thread may run already and must not outlive the controller.
        theApp.ViewBase::Close();
        return 1;
    }
    theApp.WaitforSignals();
    if (!theApp.Close() || !viewController.Stop() || !viewController.Close()) {
        return 1;
    }
    LOGBASE(LOG_LEV_BANNER, FUNC, "main end\n");
    return 0;
}
