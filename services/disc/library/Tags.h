#pragma once

#include "services/disc/medium/Medium.h"
#include "services/disc/model/Contents.h"
#include "services/disc/text/Charset.h"

namespace zm::disc::library {

/**
 * The tags of one file as they stand there. Texts are UTF-8 where the file says which character set they are
 * in, else
 * (`ofUnknownCharset`) the bytes as found.
 */
struct RawTags {
    struct Text {
        std::string bytes;
        bool ofUnknownCharset = false;
    };
    Text title;
    Text artist;
    Text album;
    int disc = 0;
    int track = 0;
    int seconds = 0;
};

/** Reads the tags of a music file; a file without or with broken tags gives empty ones. `name` tells the
 * format. */
RawTags readTags(medium::ByteReader& reader, const std::string& name);

/** Shows the texts of unknown character set to `repair`. */
void learnTags(text::CharsetRepair& repair, const RawTags& tags);
/** The tags with their texts as UTF-8. */
model::Tags repairTags(const text::CharsetRepair& repair, const RawTags& tags);

} // namespace zm::disc::library
