// Resource files. A line "//// NAME" begins a further file, which the first can include.
#include "platform/linux/toolkit/Resource.h"
#include "fuzz/formats/ResourceText.h"
#include "fuzz/support/Check.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/Scratch.h"

#include <algorithm>
#include <fstream>

using namespace zm;
using namespace zm::fuzz;

namespace {

constexpr std::string_view FileMark = "//// ";
constexpr size_t MostFiles = 4;

bool isFileName(std::string_view name) {
    return !name.empty() && name.size() < 32 &&
           name.find_first_not_of("abcdefghijklmnopqrstuvwxyz.") == name.npos && name.front() != '.';
}

// Writes the input's files; gives the path of the first.
std::string writeFiles(std::string_view text) {
    const std::string first = scratchFolder() + "/main";
    std::ofstream stream(first, std::ios::binary | std::ios::trunc);
    size_t files = 1;
    while (!text.empty()) {
        const auto line = takePart(text, '\n');
        const auto name = line.substr(std::min(FileMark.size(), line.size()));
        if (line.starts_with(FileMark) && isFileName(name) && files < MostFiles) {
            stream =
                std::ofstream(scratchFolder() + "/" + std::string(name), std::ios::binary | std::ios::trunc);
            ++files;
        } else {
            stream << line << '\n';
        }
    }
    return first;
}

void checkColor(const Resource& resource, int color) {
    check(color >= noColor && color < static_cast<int>(resource.palette.size()),
          "colours are in the palette");
}

// What drawing relies on without looking again.
void checkReferences(const Resource& resource) {
    check(!resource.languages.empty() && !resource.themes.empty(), "there are a language and a theme");
    for (const auto& [name, colors] : resource.themes) {
        check(colors.size() == resource.palette.size(), "a theme has all colours");
    }
    for (const auto& style : resource.styles) {
        for (const auto& look : style.looks) {
            for (int color : {look.text, look.icon, look.fill, look.border}) {
                checkColor(resource, color);
            }
        }
    }
    for (const auto& [id, texts] : resource.texts) {
        check(texts.size() == resource.languages.size(), "a text has a place for each language");
    }
    for (const auto& [id, picture] : resource.pictures) {
        for (const auto& layer : picture.layers) {
            checkColor(resource, layer.color);
        }
    }
    for (const auto& window : resource.windows) {
        checkColor(resource, window.background);
        for (const auto& item : window.items) {
            check(item.style >= 0 && item.style < static_cast<int>(resource.styles.size()),
                  "an item has a style");
            check(!item.rect.empty(), "an item has a place");
            check(item.parent == 0 || std::ranges::count(window.items, item.parent, &ItemSpec::id) == 1,
                  "an item's parent is in its window");
            check(std::ranges::count(window.items, item.id, &ItemSpec::id) == 1, "an id stands for one item");
        }
    }
}

} // namespace

const zm::fuzz::Format& zm::fuzz::format() {
    return resourceText();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto file = writeFiles(asText(data, size));
    const auto resource = loadResource(file, 800, 480);
    if (resource) {
        checkReferences(*resource);
    } else {
        check(resource.error().starts_with(scratchFolder()), "a fault names its file");
        check(resource.error().find("expected") != std::string::npos, "a fault says what was expected");
    }
    return 0;
}
