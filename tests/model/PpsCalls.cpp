#include "tests/model/PpsCalls.h"

#include "zmcar/PPSFileBase.h"

#include <mutex>
#include <ostream>
#include <utility>

using Oro::ZMCAR::PPSFileBase;

namespace zm::test {

static std::mutex s_mutex;
static std::vector<PpsCall> s_openings;
static std::vector<PpsCall> s_closings;
static std::string s_unclosable;

static std::string pathOf(const PPSFileBase& file) {
    const std::string& path = file.GetTagInfo().path;
    return path.substr(0, path.find('?'));
}

static bool note(std::vector<PpsCall>& calls, const PPSFileBase& file, bool good) {
    std::lock_guard lock(s_mutex);
    calls.push_back({pathOf(file), good});
    return good;
}

static bool isUnclosable(const PPSFileBase& file) {
    std::lock_guard lock(s_mutex);
    const bool is = s_unclosable == pathOf(file);
    if (is) {
        s_unclosable.clear();
    }
    return is;
}

void PrintTo(const PpsCall& call, std::ostream* out) {
    *out << call.path << (call.good ? "" : " failed");
}

std::vector<PpsCall> takePpsOpenings() {
    std::lock_guard lock(s_mutex);
    return std::exchange(s_openings, {});
}

std::vector<PpsCall> takePpsClosings() {
    std::lock_guard lock(s_mutex);
    return std::exchange(s_closings, {});
}

void failPpsClosing(const std::string& path) {
    std::lock_guard lock(s_mutex);
    s_unclosable = path;
}

} // namespace zm::test

// Stand before the platform's functions OpenPPS and ClosePPS.
extern "C" bool __real__ZN3Oro5ZMCAR11PPSFileBase7OpenPPSEv(PPSFileBase* file);
extern "C" bool __wrap__ZN3Oro5ZMCAR11PPSFileBase7OpenPPSEv(PPSFileBase* file) {
    return zm::test::note(zm::test::s_openings, *file, __real__ZN3Oro5ZMCAR11PPSFileBase7OpenPPSEv(file));
}

extern "C" bool __real__ZN3Oro5ZMCAR11PPSFileBase8ClosePPSEv(PPSFileBase* file);
extern "C" bool __wrap__ZN3Oro5ZMCAR11PPSFileBase8ClosePPSEv(PPSFileBase* file) {
    const bool closed = __real__ZN3Oro5ZMCAR11PPSFileBase8ClosePPSEv(file);
    return zm::test::note(zm::test::s_closings, *file, closed && !zm::test::isUnclosable(*file));
}
