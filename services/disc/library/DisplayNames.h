#pragma once

#include "services/disc/model/Media.h"

#include <string>
#include <vector>

namespace zm::disc::library {

/** What is known of a file when its name for the driver is looked for; texts are UTF-8. */
struct NamedFile {
    std::string fileName;
    std::string title; ///< of its tags, empty when unknown
    int track = 0;     ///< of its tags, 0 when unknown
};

/**
 * The names under which the files of one folder and kind are shown, in the order given: the title, else the
 * file's name without its ending, of music also without the track number in front. Names that would be the
 * same keep their ending, and the whole file name if that does not tell them apart.
 */
std::vector<std::string> displayNames(const std::vector<NamedFile>& files, model::MediaKind kind);

} // namespace zm::disc::library
