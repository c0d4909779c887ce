#include "services/disc/medium/DvdDetection.h"

#include "base/FileVersion.h"
#include "services/disc/medium/FolderMedium.h"
#include "services/disc/model/DiscIdentity.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zm::disc::medium {

namespace {

constexpr std::string_view FilmFolder = "VIDEO_TS";
constexpr std::array<std::string_view, 2> tables{"VIDEO_TS.IFO", "VIDEO_TS.BUP"};
constexpr std::string_view DvdMark = "DVDVIDEO-VMG";
constexpr size_t RegionsAt = 0x23;
// Of the table, which tells discs apart: what it says of the disc and of its titles.
constexpr size_t TableBytes = 8192;

char large(char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool isCalled(std::string_view name, std::string_view wanted) {
    return std::equal(name.begin(), name.end(), wanted.begin(), wanted.end(),
                      [](char a, char b) { return large(a) == b; });
}

// By the table, and by the names and sizes of all files: the tables of small discs are often the same.
std::string identityOf(std::string_view table, const std::vector<Entry>& entries) {
    model::DiscIdentity identity;
    identity.addFile("", table.size(), table, "");
    for (const auto& each : entries) {
        if (each.type == Entry::Type::File) {
            std::string name(withoutVersion(each.rawName));
            std::transform(name.begin(), name.end(), name.begin(), large);
            identity.addFile(name, each.size, "", "");
        }
    }
    return identity.text();
}

std::optional<model::DvdMark> readTable(Medium& medium, const std::string& file,
                                        const std::vector<Entry>& beside) {
    auto reader = medium.open(file);
    std::array<char, TableBytes> bytes{};
    if (!reader) {
        return std::nullopt;
    }
    const auto count = (*reader)->readAt(0, bytes);
    if (!count || *count <= RegionsAt || std::string_view(bytes.data(), DvdMark.size()) != DvdMark) {
        return std::nullopt;
    }
    return model::DvdMark{static_cast<uint8_t>(bytes[RegionsAt]), identityOf({bytes.data(), *count}, beside)};
}

const Entry* fileCalled(const std::vector<Entry>& entries, std::string_view wanted, bool versions) {
    const auto found = std::find_if(entries.begin(), entries.end(), [=](const Entry& each) {
        return each.type == Entry::Type::File &&
               isCalled(versions ? withoutVersion(each.rawName) : each.rawName, wanted);
    });
    return found == entries.end() ? nullptr : &*found;
}

std::optional<model::DvdMark> findTable(Medium& medium, const std::string& folder,
                                        const std::vector<Entry>& entries) {
    // The reader takes versions off the names of a folder, and reads the file system of an image by itself.
    const bool versions = medium.description().form == FolderMedium::Form;
    if (!fileCalled(entries, tables.front(), versions)) {
        return std::nullopt; // the reader does not go by the copy alone
    }
    for (const auto table : tables) {
        if (const Entry* entry = fileCalled(entries, table, versions)) {
            const std::string path = folder.empty() ? entry->rawName : folder + "/" + entry->rawName;
            if (const auto mark = readTable(medium, path, entries)) {
                return mark;
            }
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<model::DvdMark> findDvd(Medium& medium) {
    const auto root = medium.list("");
    if (!root) {
        return std::nullopt; // whoever reads the whole disc says why
    }
    for (const auto& entry : *root) {
        if (entry.type == Entry::Type::Folder && isCalled(entry.rawName, FilmFolder)) {
            if (const auto inside = medium.list(entry.rawName)) {
                if (const auto mark = findTable(medium, entry.rawName, *inside)) {
                    return mark;
                }
            }
        }
    }
    return findTable(medium, "", *root);
}

} // namespace zm::disc::medium
