#pragma once

#include "tests/disc/DiscUnit.h"

#include <gtest/gtest.h>

#include <string>

namespace zm::test {

/** A picture of one colour, a file's path. `type` is a name's ending. */
inline std::string plainPicture(const std::string& color, const std::string& size = "64x64",
                                const std::string& type = "png") {
    return sample({"plain-" + color + "-" + size + "." + type, "-f lavfi -i color=" + color + ":s=" + size +
                                                                   " -frames:v 1 -pix_fmt " +
                                                                   (type == "jpg" ? "yuvj444p" : "rgb24")});
}

/** A disc in a folder, the service that plays it, and the covers that it publishes. */
class Covers : public testing::Test {
protected:
    /** A tone with tags. */
    void song(const std::string& name, const std::string& title = "First Light") {
        place(toneFile(name.substr(name.rfind('.') + 1), 60, title), m_disc / name);
    }
    /** A tone with a picture of that colour in its tags. */
    void songWith(const std::string& name, const std::string& color) {
        place(withPictures(name.substr(name.rfind('.') + 1), {{color, "Cover (front)"}}), m_disc / name);
    }
    struct Sleeve {
        std::string color;
        std::string shows; ///< as ffmpeg calls it
    };
    static std::string withPictures(const std::string& type, const std::vector<Sleeve>& sleeves) {
        std::string name = "sleeve";
        std::string inputs = "-i " + toneFile("mp3", 60);
        std::string streams = " -map 0:a";
        for (size_t i = 0; i < sleeves.size(); ++i) {
            name += "-" + sleeves[i].color;
            const std::string number = std::to_string(i);
            inputs += " -i " + plainPicture(sleeves[i].color);
            streams += " -map " + std::to_string(i + 1) + " -metadata:s:v:" + number + " comment='" +
                       sleeves[i].shows + "' -disposition:v:" + number + " attached_pic";
        }
        return sample({name + "." + type, inputs + streams + " -c:v copy"});
    }

    void begin() { begin(m_disc.path().string()); }
    void begin(const std::string& disc) {
        m_unit.startService(disc);
        m_unit.command(187, 1, 0);
    }
    /** The next cover that is one. */
    nlohmann::json nextCover(std::chrono::milliseconds timeout = std::chrono::seconds(15)) {
        return m_unit
            .next(
                "cover", [](const Published& each) { return each.json()["path"] != ""; }, timeout)
            .json();
    }
    /** Where a cover is from and what is seen on it, as "embedded red". */
    static std::string brief(const nlohmann::json& cover) {
        const std::string color = cover["color"];
        const auto bright = [&](size_t at) { return std::stoi(color.substr(at, 2), nullptr, 16) > 128; };
        const std::string seen = bright(1) ? "red" : bright(3) ? "lime" : bright(5) ? "blue" : color;
        return cover["kind"].get<std::string>() + " " + seen;
    }
    std::string nextBrief() { return brief(nextCover()); }

    static constexpr int Next = 1;
    TempFolder m_disc;
    DiscUnit m_unit;
};

} // namespace zm::test
