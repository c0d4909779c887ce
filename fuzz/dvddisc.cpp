// By what a disc is recognised as a DVD-Video: names of files, one a line, up to an empty line; what follows is the table (VIDEO_TS.IFO)
// up to the copy's mark, and its copy.
#include "fuzz/formats/DvdTables.h"
#include "fuzz/support/Check.h"
#include "fuzz/support/Input.h"
#include "services/disc/medium/DvdDetection.h"

#include <map>

using namespace zm;
using namespace zm::disc::medium;
using namespace zm::fuzz;

namespace {

constexpr std::string_view CopyMark = "\n==BUP==\n";

class Bytes : public ByteReader {
public:
    explicit Bytes(std::string_view bytes) : m_bytes(bytes) {}
    uint64_t size() const override { return m_bytes.size(); }
    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        return offset >= m_bytes.size() ? size_t{0} : m_bytes.copy(buffer.data(), buffer.size(), offset);
    }

private:
    std::string_view m_bytes;
};

/** A name that ends in "/" is a folder; one with "!" in front cannot be read. */
class Disc : public Medium {
public:
    explicit Disc(std::string_view text) {
        while (!text.empty()) {
            const auto line = takePart(text, '\n');
            if (line.empty()) {
                break;
            }
            const bool folder = line.back() == '/';
            const std::string name(folder ? line.substr(0, line.size() - 1) : line);
            const size_t slash = name.find('/');
            const std::string parent = slash == std::string::npos ? "" : name.substr(0, slash);
            m_folders[parent].push_back({name.substr(slash == std::string::npos ? 0 : slash + 1),
                                         folder ? Entry::Type::Folder : Entry::Type::File,
                                         {},
                                         line.size()});
        }
        const auto copy = text.find(CopyMark);
        m_table = text.substr(0, copy);
        m_copy = copy == std::string_view::npos ? std::string_view() : text.substr(copy + CopyMark.size());
    }

    std::string label() const override { return {}; }
    Result<std::vector<Entry>> list(const std::string& folder) override {
        const auto found = m_folders.find(folder);
        return found == m_folders.end() ? Result<std::vector<Entry>>(Error{"no such folder"}) : found->second;
    }
    Result<std::unique_ptr<ByteReader>> open(const std::string& file) override {
        if (file.starts_with('!')) {
            return Error{"cannot be read"};
        }
        const bool copy = file.ends_with("P") || file.ends_with("p");
        return std::unique_ptr<ByteReader>(std::make_unique<Bytes>(copy ? m_copy : m_table));
    }
    bool hasTable() const {
        constexpr std::string_view Mark = "DVDVIDEO-VMG";
        return m_table.starts_with(Mark) || m_copy.starts_with(Mark);
    }

private:
    std::map<std::string, std::vector<Entry>> m_folders;
    std::string_view m_table;
    std::string_view m_copy;
};

} // namespace

const zm::fuzz::Format& zm::fuzz::format() {
    return dvdTables();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Disc disc(asText(data, size));
    const auto found = findDvd(disc);
    check(!found || disc.hasTable(), "a DVD has the mark of one");
    check(!found || !found->identity.empty(), "and is told from others");
    const auto again = findDvd(disc);
    check(found.has_value() == again.has_value() && (!found || found->identity == again->identity),
          "a disc is the same each time");
    return 0;
}
