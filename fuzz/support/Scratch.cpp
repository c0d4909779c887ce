#include "fuzz/support/Scratch.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace zm::fuzz {

namespace {

struct Scratch {
    std::string folder = (std::filesystem::temp_directory_path() / "zm-fuzz-XXXXXX").string();

    Scratch() {
        if (!mkdtemp(folder.data())) {
            std::perror(folder.c_str());
            std::exit(1);
        }
        setenv("ZM_RUNTIME", folder.c_str(), 1);
        unsetenv("ZM_CATALOGUE");
    }
    ~Scratch() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
};

} // namespace

const std::string& scratchFolder() {
    static const Scratch scratch;
    return scratch.folder;
}

} // namespace zm::fuzz
