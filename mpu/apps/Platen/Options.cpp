#include "Options.h"

#include "zmcar/ArgvDecode.h"

#include <cstdio>
#include <cstdlib>
#include <getopt.h>
#include <map>

// The C library here would look for options behind the first argument, unless told to stop at it.
#ifdef __GLIBC__
#define STOP_AT_FIRST_ARGUMENT "+"
#else
#define STOP_AT_FIRST_ARGUMENT ""
#endif

static const char* const USAGE_LINES[] = {
    "  -v    get version",
    "  -h    get help",
    "  -m [MCU|MPU|...]   set packet name",
    "  -c [install|uninstall]set command",
    "  -f [/tmp/mcu.tar.gz]  set packet file",
    "  -u [authtoken] set authtoken",
    "  -p  monitor pps control",
};

static void print_version() {
    std::printf("%s:%s\n", APP_NAME, APP_VERSION);
}

void usage() {
    print_version();
    for (const char* line : USAGE_LINES) {
        std::printf("%s\n", line);
    }
}

void get_options(int argc, char** argv) {
    switch (getopt(argc, argv, STOP_AT_FIRST_ARGUMENT "vhpm:c:f:u:")) {
    case -1:
        optind = 0;
        return;
    case 'v':
        print_version();
        break;
    default:
        usage();
    }
    std::exit(0);
}

bool get_song(int argc, char** argv, std::string& song) {
    std::map<std::string, std::string> params;
    if (Oro::ZMCAR::ArgvDecode::GetOpt_LongParams(argc, argv, params) <= 0) {
        return false;
    }
    auto found = params.find("song");
    if (found == params.end()) {
        return false;
    }
    song = found->second;
    return true;
}
