// How long the disc service takes to read a disc of 10,000 tagged files, beside a bare loop over the same
// files.
#include "benchmarks/Figure.h"
#include "services/disc/library/Catalogue.h"
#include "services/disc/library/Scanner.h"
#include "services/disc/medium/FolderMedium.h"

#include <taglib/fileref.h>
#include <taglib/tag.h>
#include <taglib/tpropertymap.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

using namespace zm;
using namespace zm::benchmark;
namespace fs = std::filesystem;

namespace {

constexpr int FileCount = 10000;
constexpr int FilesInFolder = 100;

/** Copies `sample` 10,000 times and gives each copy tags of its own; keeps a disc that is already there. */
void makeDisc(const fs::path& root, const fs::path& sample) {
    if (fs::exists(root / "complete")) {
        return;
    }
    for (int number = 0; number < FileCount; ++number) {
        const fs::path folder = root / ("Album " + std::to_string(number / FilesInFolder + 1));
        fs::create_directories(folder);
        const fs::path file =
            folder / ("Song " + std::to_string(number % FilesInFolder + 1) + sample.extension().string());
        fs::copy_file(sample, file, fs::copy_options::overwrite_existing);
        TagLib::FileRef reference(file.c_str(), false);
        reference.tag()->setTitle("Title " + std::to_string(number));
        reference.tag()->setArtist("Artist " + std::to_string(number / FilesInFolder));
        reference.tag()->setTrack(static_cast<unsigned>(number % FilesInFolder + 1));
        reference.save();
    }
    fs::create_directory(root / "complete");
}

size_t bareLoop(const fs::path& root) {
    size_t found = 0;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        if (entry.is_regular_file()) {
            const TagLib::FileRef reference(entry.path().c_str());
            found += reference.tag() && !reference.tag()->title().isEmpty() && reference.audioProperties();
        }
    }
    return found;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: bench_scan FOLDER SAMPLE\n");
        return 2;
    }
    const fs::path root = fs::path(argv[1]) / "disc";
    makeDisc(root, argv[2]);
    const std::string database = (fs::path(argv[1]) / "catalogue.sqlite").string();
    bareLoop(root);
    std::vector<double> ours;
    std::vector<double> bare;
    size_t files = 0;
    for (int turn = 0; turn < 5; ++turn) {
        bare.push_back(milliseconds(1, 0, [&](int) { files = bareLoop(root); })[0]);
        ours.push_back(milliseconds(1, 0, [&](int) {
            disc::medium::FolderMedium medium(root.string());
            disc::library::ScanProgress progress;
            auto contents = disc::library::scan(medium, progress);
            auto catalogue = disc::library::Catalogue::open(database);
            if (!contents || !catalogue || !(*catalogue)->clear() ||
                !(*catalogue)->write(*contents, disc::model::MediaKind::Music, progress.cancelled)) {
                std::fprintf(stderr, "the scan failed\n");
                std::exit(1);
            }
        })[0]);
    }
    print({"scan and catalogue of " + std::to_string(files) + " tagged files", "ms", median(ours), 1.5,
           "bare TagLib loop", median(bare), true});
    return 0;
}
