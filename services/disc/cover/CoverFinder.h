#pragma once

#include "services/disc/cover/CoverCache.h"
#include "services/disc/cover/CoverProgram.h"
#include "services/disc/medium/Medium.h"
#include "services/disc/model/Contents.h"
#include "services/disc/model/DiscState.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zm::disc::cover {

/**
 * Finds the covers of a disc's songs: the picture in the song's tags, else one beside its file, else a drawn one. What is
 * no picture, or too large a one, counts as none. Blocks as long as the drive and the decoder do; one thread.
 */
class CoverFinder {
public:
    CoverFinder(std::shared_ptr<medium::Medium> medium, std::shared_ptr<const model::Contents> contents,
                std::shared_ptr<CoverCache> cache)
        : m_medium(std::move(medium)), m_contents(std::move(contents)), m_cache(std::move(cache)) {}

    /** Nothing when it is stopped, or when not even a drawn one can be had. */
    std::optional<model::Cover> find(const model::Item& song, const Stop& stop);

private:
    using Found = std::optional<model::Cover>;
    Found search(const model::Item& song, const std::string& path, const Stop& stop);
    Found embedded(const std::string& path, const std::string& name, const Stop& stop);
    Found beside(const model::Folder& folder, const Stop& stop);
    Found besideAt(const std::string& path, const Stop& stop);
    Found drawn(const model::Item& song, const Stop& stop);
    Found ofPicture(const std::string& bytes, const char* kind, const std::string& where, const Stop& stop);
    Found keep(const std::string& key, const char* kind, const Bitmap& picture);
    /** One that was found before and is still kept. */
    Found known(const std::string& key);
    const std::vector<std::string>& pathsBeside(const model::Folder& folder);

    std::shared_ptr<medium::Medium> m_medium;
    std::shared_ptr<const model::Contents> m_contents;
    std::shared_ptr<CoverCache> m_cache;
    std::map<std::string, model::Cover> m_covers; ///< by key
    std::map<std::string, std::string> m_keys;    ///< by the path of a song, or of a picture beside one
    std::map<int, std::vector<std::string>> m_pathsBeside; ///< the likeliest first, by folder
};

} // namespace zm::disc::cover
