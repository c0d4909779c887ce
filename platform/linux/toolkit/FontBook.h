#pragma once

#include "base/Result.h"

#include <cairo.h>
#include <pango/pango.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace zm {

struct Unref {
    void operator()(void* object) const;
};
using LayoutPtr = std::unique_ptr<PangoLayout, Unref>;

/** Direction of a whole text (its base direction); parts of it may run the other way. */
enum class TextDirection { LeftToRight, RightToLeft };
/** That of its first letter; left to right for a text without letters. */
TextDirection directionOf(const std::string& text);

/**
 * The fonts of one folder and none of the machine's own, so that the same text gives the same pixels
 * everywhere. Belongs to one thread.
 */
class FontBook {
public:
    /** Fails if the folder holds no font. */
    static Result<std::unique_ptr<FontBook>> open(const std::string& fontDir);
    ~FontBook();
    FontBook(const FontBook&) = delete;
    FontBook& operator=(const FontBook&) = delete;

    /** An empty layout: one paragraph, cut with an ellipsis at its end. */
    LayoutPtr layout(int pixels, bool bold, TextDirection direction);
    /** A layout of one glyph of the icon font. */
    LayoutPtr glyph(const std::string& text, double pixels);

    /** Loads the fonts of other scripts as soon as a text needs them; they are large. Layouts adapt
     * themselves. */
    void prepare(const std::string& text);

private:
    FontBook() = default;
    bool load(const std::vector<std::string>& files);
    std::vector<std::string> allFonts() const;
    PangoContext* context(TextDirection direction) const {
        return m_contexts[static_cast<size_t>(direction)];
    }

    std::string m_fontDir;
    bool m_all = false;
    PangoFontMap* m_map = nullptr;
    std::array<PangoContext*, 2> m_contexts{}; ///< by TextDirection
};

/** UTF-8 of 32-bit characters; an invalid one becomes U+FFFD. */
std::string fromWide(const wchar_t* text);
/** The same, appended to `bytes`. */
void appendWide(std::string& bytes, const wchar_t* text);
/** The text as it can be drawn in one line: valid UTF-8 without control characters, at most 600 bytes. */
std::string drawable(const std::string& text);

} // namespace zm
