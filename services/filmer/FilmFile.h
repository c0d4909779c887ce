#pragma once

#include "base/Image.h"
#include "base/Result.h"
#include "base/ScreenSize.h"
#include "base/UniqueFd.h"
#include "services/film/Moment.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

using GstElement = struct _GstElement;

namespace zm::filmer {

/** What an existing file means. */
enum class Existing { Refused, Overwritten };

/**
 * A film on its way into a file: VP8 and Opus in WebM. Encoding and writing have threads of their own. What was written
 * can be played at any time, whether the film was ended or not.
 */
class FilmFile {
public:
    /** An error says why there can be no such file; an existing one is then as it was. */
    static Result<std::unique_ptr<FilmFile>> create(const std::string& path, Existing existing,
                                                    ScreenSize screen);
    ~FilmFile();
    FilmFile(const FilmFile&) = delete;
    FilmFile& operator=(const FilmFile&) = delete;

    /** `time` from the film's beginning. The picture is let go of once it is encoded. */
    void addPicture(std::shared_ptr<const Image> picture, film::Moment time);
    /** 16 bit, stereo; without a gap behind what was added before. */
    void addSound(uint32_t rate, std::span<const int16_t> samples, film::Moment time);
    /** Why it goes on no longer. */
    std::optional<std::string> failure();
    /** Completes the file. */
    Status finish();

private:
    FilmFile(std::string path, UniqueFd fd, GstElement* pipeline, ScreenSize screen);
    std::string sentence(void* errorMessage) const;
    GstElement* source(const char* name) const;

    const std::string m_path;
    UniqueFd m_fd;
    GstElement* m_pipeline;
    uint32_t m_rate = 0; ///< of the sound that was added last
};

} // namespace zm::filmer
