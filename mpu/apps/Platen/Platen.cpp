#include "Platen.h"

#include "DiscOsdView.h"
#include "DiscView.h"
#include "DiscViewController.h"
#include "Log.h"
#include "Options.h"
#include "StartUp.h"
#include "ZMModel/CDiscData.h"

#include <cstdlib>

namespace {

constexpr const char* BUILD_DATE = "Sep  9 2015";
constexpr const char* BUILD_TIME = "10:08:13";
/** The function that log lines of the start-up name. */
constexpr const char* FUNC = "main";

} // namespace

int PlatenMain(int argc, char** argv) {
    if (argc <= 1) {
        usage();
        std::exit(0);
    }
    get_options(argc, argv);

    StartUpArguments arguments;
    arguments.group = argv[1];
    arguments.bSongGiven = get_song(argc, argv, arguments.song);
    LOGBASE(LOG_LEV_BANNER, FUNC, "\n\n----------------%s %s : %s %s main begin --------------------\n\n",
            APP_NAME, APP_VERSION, BUILD_DATE, BUILD_TIME);

    CDiscData& data = *CDiscData::GetInstance();
    DiscView theApp(MAIN_VIEW_NAME, data);
    DiscOsdView theOsd(data);
    DiscViewController viewController(&theApp, data);
    if (!StartUp(theApp, theOsd, viewController, arguments)) {
        return 1;
    }
    theApp.WaitforSignals();
    if (!ShutDown(theApp, viewController)) {
        return 1;
    }
    LOGBASE(LOG_LEV_BANNER, FUNC, "main end\n");
    return 0;
}
