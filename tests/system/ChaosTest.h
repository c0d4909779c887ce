#pragma once

#include "tests/system/MusicFolder.h"
#include "tests/system/Sanitized.h"
#include "tests/system/SystemTest.h"

#include <algorithm>
#include <cstdlib>
#include <random>
#include <thread>

namespace zm::test {

/** So soon after a fault's end everything is as it should be;
 * a machine that is busy with more gets longer. */
inline std::chrono::duration<double> recoveryTime() {
    double load = 0;
    getloadavg(&load, 1);
    // Under the thread sanitizer a program lives a second longer.
    const std::chrono::seconds limit(Sanitized ? 4 : 2);
    return limit * std::max(1.0, load / std::thread::hardware_concurrency());
}

/** All real programs, and what goes wrong around them. */
class Chaos : public SystemTest {
protected:
    void startAll() { startBench({"--no-web", "--launcher", "passive"}); }
    /** A disc of music is in the drive and plays. */
    void playDisc() {
        writeMusicFolder(music(), 4);
        must({"insert", music()});
        ASSERT_TRUE(eventually([this] { return plays(); })) << must({"pps", "get", "zelmar/disc/status"});
    }
    virtual std::string music() { return folder + "/music"; }

    /** The play page shows a title of the disc and the player plays; asked without assuming that anything
     * runs. */
    bool plays() {
        const auto page = ctl({"screen", "main", "6"});
        const auto status = ctl({"pps", "get", "zelmar/disc/status"});
        if (page.exit != 0 || status.out.find("discstate::2\n") == std::string::npos) {
            return false;
        }
        const Json main = Json::parse(page.out)["main"];
        return main["window"] == 6 &&
               main["windows"]["6"]["items"]["2065"]["text"].get<std::string>().starts_with("song");
    }
    bool driveIsEmpty() { return ctl({"disc"}).out.find(R"("state":"empty")") != std::string::npos; }
    bool showsNoDisc() {
        const Json message = item(1, 7004)["textId"]; // no disc, or that it was ejected
        return window() == 1 && (message == 34 || message == 110);
    }
    /** Within the recovery time after `allBack` has become true, `right` holds. */
    void expectRecovery(const std::function<bool()>& allBack, const std::function<bool()>& right) {
        ASSERT_TRUE(eventually(allBack)) << ctl({"ps"}).out << bench->err();
        const auto back = Clock::now();
        EXPECT_TRUE(eventually(right)) << ctl({"screen", "main", "6"}).out.substr(0, 200)
                                       << ctl({"pps", "get", "zelmar/disc/status"}).out << bench->err();
        EXPECT_LE(Clock::now() - back, recoveryTime());
    }
    bool allRun() {
        const auto answer = ctl({"ps"});
        return answer.exit == 0 && answer.out.find("disc -") == std::string::npos &&
               answer.out.find("app -") == std::string::npos;
    }
    /** Some moments of a driver's day, the same for the same seed. */
    void useFor(std::chrono::milliseconds time) {
        const auto end = Clock::now() + time;
        while (Clock::now() < end) {
            switch (m_random() % 4) {
            case 0:
                ctl({"key", m_random() % 2 ? "20" : "21"});
                break;
            case 1:
                ctl({"touch", std::to_string(m_random() % 800), std::to_string(m_random() % 380)});
                break;
            case 2:
                ctl({"app", m_random() % 2 ? "pause" : "resume"});
                break;
            default:
                ctl({"device", "7", std::to_string(m_random() % 400)});
            }
        }
        // Back to the page from wherever that led.
        ctl({"app", "resume"});
    }
    std::chrono::milliseconds someTime() { return std::chrono::milliseconds(m_random() % 300); }

    using Clock = std::chrono::steady_clock;
    std::mt19937 m_random{20150909};
};

} // namespace zm::test
