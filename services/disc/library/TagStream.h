#pragma once

#include "services/disc/medium/Medium.h"

#include <tiostream.h>

#include <vector>

namespace zm::disc::library {

/** Lets the tag library read a file of any disc. Reads blocks,
 * as a tag is many small pieces close together. */
class TagStream : public TagLib::IOStream {
public:
    TagStream(medium::ByteReader& reader, std::string name);

    TagLib::FileName name() const override { return m_name.c_str(); }
    TagLib::ByteVector readBlock(unsigned long length) override;
    void writeBlock(const TagLib::ByteVector&) override {}
    void insert(const TagLib::ByteVector&, unsigned long, unsigned long) override {}
    void removeBlock(unsigned long, unsigned long) override {}
    bool readOnly() const override { return true; }
    bool isOpen() const override { return true; }
    void seek(long offset, Position from) override;
    void clear() override {}
    long tell() const override { return m_position; }
    long length() override { return static_cast<long>(m_reader.size()); }
    void truncate(long) override {}

private:
    bool fill(uint64_t offset);
    medium::ByteReader& m_reader;
    std::string m_name;
    long m_position = 0;
    std::vector<char> m_block;
    uint64_t m_blockStart = 0;
    size_t m_blockSize = 0;
};

} // namespace zm::disc::library
