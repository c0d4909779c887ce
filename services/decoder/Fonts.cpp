#include "services/decoder/Fonts.h"

#include "services/disc/engine/Gst.h"

#include <fcntl.h>
#include <fontconfig/fontconfig.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace zm::decoder {

namespace {

constexpr size_t MostFonts = 3000;
// Beside the fonts.
constexpr rlim_t OtherFiles = 500;

struct Font {
    std::string path;
    int fd = -1;
};
std::vector<Font> fonts;

} // namespace

void openFonts() {
    // The element that draws texts reads all about fonts when the first of its kind is made.
    if (GstElement* overlay = gst_element_factory_make("textoverlay", nullptr)) {
        gst_object_ref_sink(overlay);
        gst_object_unref(overlay);
    }
    rlimit files{};
    ::getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = std::min<rlim_t>(files.rlim_max, MostFonts + OtherFiles);
    ::setrlimit(RLIMIT_NOFILE, &files);
    FcInit();
    const FcFontSet* known = FcConfigGetFonts(nullptr, FcSetSystem);
    std::set<std::string> paths;
    for (int i = 0; known && i < known->nfont && paths.size() < MostFonts; ++i) {
        FcChar8* path = nullptr;
        if (FcPatternGetString(known->fonts[i], FC_FILE, 0, &path) == FcResultMatch) {
            paths.insert(reinterpret_cast<const char*>(path));
        }
    }
    for (const std::string& path : paths) {
        if (const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC); fd >= 0) {
            fonts.push_back({path, fd});
        }
    }
}

int fontDescriptor(const char* path) {
    for (const Font& font : fonts) {
        if (std::strcmp(font.path.c_str(), path) == 0) {
            return font.fd;
        }
    }
    return -1;
}

} // namespace zm::decoder
