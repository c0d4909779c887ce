#pragma once

#include "BuildPaths.h"
#include "platform/linux/toolkit/Resource.h"
#include "platform/linux/toolkit/Scene.h"
#include "tests/support/TemporaryFolder.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"
#include "zmui/CUI_BtList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace zm::test {

inline constexpr int width = 800;
inline constexpr int height = 480;
inline const std::string fontDir = ZM_BINARY_DIR "/share/fonts/";
inline const std::string resourceDir = ZM_SOURCE_DIR "/resources/";

/** One of the project's resource files, which has to be good; empty and a failed test otherwise. */
inline Resource readResource(const std::string& name) {
    auto resource = loadResource(resourceDir + name + ".zmrc_device", width, height);
    if (!resource) {
        ADD_FAILURE() << resource.error();
        return {};
    }
    return std::move(*resource);
}

/** The player's own file, in which a test may change an item or its style. */
class DiscResource : public testing::Test {
protected:
    ItemSpec& item(int window, int id) {
        for (WindowSpec& one : resource.windows) {
            for (ItemSpec& candidate : one.items) {
                if (one.id == window && candidate.id == id) {
                    return candidate;
                }
            }
        }
        throw std::out_of_range("no such item");
    }
    Style& styleOf(int window, int id) {
        return resource.styles[static_cast<size_t>(item(window, id).style)];
    }

    Resource resource = readResource("DISC");
};

/** Writes down what a scene reports: "6/6521:1" is the release of control 6521 on page 6, "24 scroll 3@0" a
 * list's start. */
class Recorder : public zm::SceneListener {
public:
    void itemClicked(int window, int control, int state) override {
        events.push_back(std::to_string(window) + "/" + std::to_string(control) + ":" +
                         std::to_string(state));
    }
    void listScrolled(int window, int kind, _tagList_Info& info) override {
        events.push_back(std::to_string(window) + " scroll kind " + std::to_string(kind) + " item " +
                         std::to_string(info.nItemId) + " state " + std::to_string(info.nState));
    }
    std::vector<std::string> take() { return std::exchange(events, {}); }

    std::vector<std::string> events;
};

/** A scene with the pixels that it draws into. */
class Stage {
public:
    explicit Stage(const std::string& file) : pixels(width * height * 4, 0x55) {
        auto loaded = zm::Scene::load(file, fontDir, width, height, recorder);
        if (!loaded) {
            ADD_FAILURE() << loaded.error();
            std::abort();
        }
        scene = std::move(*loaded);
        ui = scene->wndMng().GetUIAnalysisObj();
    }

    std::vector<zm::Rect> paint() { return scene->paint(pixels.data(), width * 4); }
    uint32_t pixel(int x, int y) const {
        uint32_t value = 0;
        std::memcpy(&value, &pixels[static_cast<size_t>((y * width + x) * 4)], 4);
        return value;
    }
    nlohmann::json item(int window, int id) const {
        return scene->describe(window).at(std::to_string(window)).at("items").at(std::to_string(id));
    }
    zm::Rect rect(int window, int id) const {
        const auto box = item(window, id).at("rect");
        return {box[0], box[1], box[2], box[3]};
    }
    void pressItem(int window, int id) {
        const zm::Rect box = rect(window, id);
        scene->press(box.x + box.w / 2, box.y + box.h / 2);
    }
    void click(int window, int id) {
        pressItem(window, id);
        scene->release(0, 0, 0);
    }
    CUI_BtList* list(int window) {
        CUI_BtList* control = nullptr;
        ui->GetItemData(window, 2000, control);
        return control;
    }
    void fill(CUI_BtList& control, int rows) {
        for (int i = control.GetItemCount(); i < rows; ++i) {
            control.InsertItem(i, -1);
            control.SetItemICon(i, 140, 4, 0, 1);
            control.SetItemString(i, (std::to_wstring(i + 1) + L"  Song").c_str(), 1);
        }
    }

    Recorder recorder;
    std::unique_ptr<zm::Scene> scene;
    CUIAnalysis* ui = nullptr;
    std::vector<uint8_t> pixels;
};

inline int area(const std::vector<zm::Rect>& areas) {
    int sum = 0;
    for (const zm::Rect& one : areas) {
        sum += one.w * one.h;
    }
    return sum;
}

} // namespace zm::test
