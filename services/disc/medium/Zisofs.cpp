#include "services/disc/medium/Zisofs.h"

#include "services/disc/medium/IsoNumbers.h"

#include <zlib.h>

#include <algorithm>
#include <string_view>

namespace zm::disc::medium {

namespace {

constexpr std::string_view ZisofsMark("\x37\xE4\x53\x96\xC9\xDB\xD6\x07", 8);
constexpr uint32_t LeastBlockBits = 15;
constexpr uint32_t MostBlockBits = 17;
constexpr size_t NumberBytes = 4;

class ZisofsReader : public ByteReader {
public:
    ZisofsReader(std::unique_ptr<ByteReader> file, const ZisofsHeader& header, std::string blocks,
                 std::string name)
        : m_file(std::move(file)), m_header(header), m_table(std::move(blocks)), m_name(std::move(name)) {}

    uint64_t size() const override { return m_header.size; }

    Result<size_t> readAt(uint64_t offset, std::span<char> buffer) override {
        size_t done = 0;
        while (done < buffer.size() && offset + done < m_header.size) {
            const uint64_t block = (offset + done) >> m_header.blockBits;
            if (auto loaded = load(block); !loaded) {
                return loaded.failure();
            }
            const auto skip = static_cast<size_t>(offset + done - (block << m_header.blockBits));
            const size_t count = m_block.copy(buffer.data() + done, buffer.size() - done, skip);
            if (count == 0) {
                break;
            }
            done += count;
        }
        return done;
    }

private:
    Status load(uint64_t block) {
        if (block == m_loaded) {
            return ok();
        }
        const uint64_t begin = isoNumber32(m_table, static_cast<size_t>(block) * NumberBytes);
        const uint64_t end = isoNumber32(m_table, static_cast<size_t>(block + 1) * NumberBytes);
        const uint64_t place = block << m_header.blockBits;
        const uint64_t whole = uint64_t{1} << m_header.blockBits;
        m_loaded = UINT64_MAX;
        m_block.assign(static_cast<size_t>(std::min(whole, m_header.size - place)), '\0');
        if (begin == end) {
            m_loaded = block; // nothing but zeros
            return ok();
        }
        if (end < begin || end > m_file->size() || end - begin > compressBound(static_cast<uLong>(whole))) {
            return damaged(block);
        }
        std::string packed(static_cast<size_t>(end - begin), '\0');
        const auto count = m_file->readAt(begin, packed);
        if (!count) {
            return count.failure();
        }
        uLongf size = static_cast<uLongf>(m_block.size());
        const int result =
            ::uncompress(reinterpret_cast<Bytef*>(m_block.data()), &size,
                         reinterpret_cast<const Bytef*>(packed.data()), static_cast<uLong>(*count));
        if (result != Z_OK || size != m_block.size()) {
            return damaged(block);
        }
        m_loaded = block;
        return ok();
    }

    Error damaged(uint64_t block) const {
        return Error{m_name + ": its compressed block " + std::to_string(block) + " is damaged"};
    }

    std::unique_ptr<ByteReader> m_file;
    ZisofsHeader m_header;
    std::string m_table; ///< where each block begins, and where the last one ends
    std::string m_name;
    uint64_t m_loaded = UINT64_MAX;
    std::string m_block;
};

} // namespace

Result<std::unique_ptr<ByteReader>> openZisofs(std::unique_ptr<ByteReader> file, const ZisofsHeader& header,
                                               const std::string& name) {
    if (header.blockBits < LeastBlockBits || header.blockBits > MostBlockBits) {
        return Error{name + ": compressed in a way that is not read"};
    }
    const uint64_t blocks =
        (uint64_t{header.size} + (uint64_t{1} << header.blockBits) - 1) >> header.blockBits;
    std::string pointers(static_cast<size_t>(blocks + 1) * NumberBytes, '\0');
    std::string mark(ZisofsMark.size(), '\0');
    const auto marked = file->readAt(0, mark);
    const auto count = marked ? file->readAt(header.headerBytes, pointers) : marked;
    if (!count) {
        return count.failure();
    }
    if (mark != ZisofsMark || *count < pointers.size()) {
        return Error{name + ": compressed in a way that is not read"};
    }
    return std::unique_ptr<ByteReader>(
        std::make_unique<ZisofsReader>(std::move(file), header, std::move(pointers), name));
}

} // namespace zm::disc::medium
