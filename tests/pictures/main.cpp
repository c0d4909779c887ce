// The tests; or sheets of pictures to look at.

#include "tests/pictures/Folders.h"
#include "tests/pictures/Picture.h"

#include <fnmatch.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace {

using namespace zm::test;

constexpr const char* usage = "usage: test_pictures [options of the tests]\n"
                              "       test_pictures --changes FILE       what the last run found: reference, "
                              "picture, difference\n"
                              "       test_pictures --sheet FILE [PATTERN]  the references whose names fit a "
                              "shell pattern\n";

/** Names of the pictures in a folder, in order. */
std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code missing;
    for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
        if (entry.path().extension() == ".png") {
            names.push_back(entry.path().filename());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

int write(const std::string& file, const std::vector<zm::Image>& pictures, int columns,
          const std::string& none) {
    if (pictures.empty()) {
        std::printf("%s\n", none.c_str());
        return 0;
    }
    if (!writePng(file, montage(pictures, columns))) {
        std::fprintf(stderr, "test_pictures: %s cannot be written\n", file.c_str());
        return 1;
    }
    std::printf("%s\n", file.c_str());
    return 0;
}

int changesSheet(const std::string& file) {
    std::vector<zm::Image> pictures;
    for (const std::string& name : namesIn(changes)) {
        for (const std::string& folder : {references, changes, differences}) {
            pictures.push_back(readPng(folder + name).value_or(zm::Image()));
        }
        std::printf("%s\n", name.c_str());
    }
    return write(file, pictures, 3, "no picture has changed");
}

int referencesSheet(const std::string& file, const std::string& pattern) {
    std::vector<zm::Image> pictures;
    for (const std::string& name : namesIn(references)) {
        if (fnmatch(pattern.c_str(), name.c_str(), 0) == 0) {
            pictures.push_back(readPng(references + name).value_or(zm::Image()));
        }
    }
    return write(file, pictures, 4, "no picture fits " + pattern);
}

} // namespace

int main(int count, char** words) {
    const std::vector<std::string> arguments(words + 1, words + count);
    if (arguments.size() == 2 && arguments[0] == "--changes") {
        return changesSheet(arguments[1]);
    }
    if ((arguments.size() == 2 || arguments.size() == 3) && arguments[0] == "--sheet") {
        return referencesSheet(arguments[1], arguments.size() == 3 ? arguments[2] : "*");
    }
    testing::InitGoogleTest(&count, words);
    if (count > 1) {
        std::fputs(usage, stderr);
        return 2;
    }
    return RUN_ALL_TESTS();
}
