#include "platform/linux/toolkit/FontBook.h"

#include <fontconfig/fontconfig.h>
#include <glib-object.h>
#include <pango/pangocairo.h>
#include <pango/pangofc-fontmap.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <filesystem>

namespace zm {

namespace {

constexpr const char* textFamily = "zmtext";
constexpr const char* glyphFamily = "Material Design Icons";
constexpr size_t longestDrawn = 600;
constexpr gunichar firstOfOtherScripts = 0x0590;
constexpr gunichar firstLatinAgain = 0x1E00; ///< Latin and Greek additions, punctuation, currencies
constexpr gunichar lastLatinAgain = 0x20CF;

/** Small fonts that every page needs; the others are loaded with the first text that is not Latin, Greek or
 * Cyrillic. */
constexpr std::array<const char*, 3> firstFonts = {"NotoSans-Regular.ttf", "NotoSans-Bold.ttf",
                                                   "materialdesignicons-webfont.ttf"};

constexpr std::array<GUnicodeScript, 5> scriptsFromRight = {G_UNICODE_SCRIPT_ARABIC, G_UNICODE_SCRIPT_HEBREW,
                                                            G_UNICODE_SCRIPT_SYRIAC, G_UNICODE_SCRIPT_THAANA,
                                                            G_UNICODE_SCRIPT_NKO};

constexpr const char* configuration =
    "<fontconfig><alias binding=\"strong\"><family>zmtext</family><prefer><family>Noto Sans</family>"
    "<family>Noto Sans CJK SC</family><family>Noto Sans Arabic</family></prefer></alias></fontconfig>";

} // namespace

void Unref::operator()(void* object) const {
    g_object_unref(object);
}

TextDirection directionOf(const std::string& text) {
    const std::string valid = drawable(text);
    for (const char* at = valid.c_str(); *at; at = g_utf8_next_char(at)) {
        const gunichar character = g_utf8_get_char(at);
        if (g_unichar_isalpha(character)) {
            const GUnicodeScript script = g_unichar_get_script(character);
            const bool right =
                std::find(scriptsFromRight.begin(), scriptsFromRight.end(), script) != scriptsFromRight.end();
            return right ? TextDirection::RightToLeft : TextDirection::LeftToRight;
        }
    }
    return TextDirection::LeftToRight;
}

Result<std::unique_ptr<FontBook>> FontBook::open(const std::string& fontDir) {
    std::unique_ptr<FontBook> book(new FontBook);
    book->m_fontDir = fontDir;
    book->m_map = pango_cairo_font_map_new_for_font_type(CAIRO_FONT_TYPE_FT);
    std::vector<std::string> first;
    for (const char* name : firstFonts) {
        first.push_back((std::filesystem::path(fontDir) / name).string());
    }
    if (!book->load(first) && !book->load(book->allFonts())) {
        return Error{fontDir + ": holds no fonts, expected at least " + firstFonts.front()};
    }
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
    for (PangoContext*& context : book->m_contexts) {
        context = pango_font_map_create_context(book->m_map);
        pango_cairo_context_set_font_options(context, options);
    }
    cairo_font_options_destroy(options);
    // Set, because the default lets the letters decide: a row number would stand before some names and behind
    // others.
    pango_context_set_base_dir(book->context(TextDirection::LeftToRight), PANGO_DIRECTION_LTR);
    pango_context_set_base_dir(book->context(TextDirection::RightToLeft), PANGO_DIRECTION_RTL);
    return book;
}

FontBook::~FontBook() {
    for (PangoContext* context : m_contexts) {
        if (context) {
            g_object_unref(context);
        }
    }
    if (m_map) {
        // The map keeps its last configuration with all its fonts for good; an empty one costs next to
        // nothing.
        FcConfig* empty = FcConfigCreate();
        pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(m_map), empty);
        FcConfigDestroy(empty);
        g_object_unref(m_map);
    }
}

std::vector<std::string> FontBook::allFonts() const {
    std::vector<std::string> files;
    std::error_code failed;
    for (const auto& entry : std::filesystem::directory_iterator(m_fontDir, failed)) {
        files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool FontBook::load(const std::vector<std::string>& files) {
    FcConfig* config = FcConfigCreate();
    FcConfigParseAndLoadFromMemory(config, reinterpret_cast<const FcChar8*>(configuration), FcTrue);
    bool found = false;
    for (const std::string& file : files) {
        found =
            FcConfigAppFontAddFile(config, reinterpret_cast<const FcChar8*>(file.c_str())) == FcTrue || found;
    }
    if (found) {
        pango_fc_font_map_set_config(PANGO_FC_FONT_MAP(m_map), config);
    }
    FcConfigDestroy(config);
    return found;
}

void FontBook::prepare(const std::string& text) {
    for (const char* at = text.c_str(); !m_all && *at; at = g_utf8_next_char(at)) {
        const gunichar character = g_utf8_get_char(at);
        if (character < firstOfOtherScripts ||
            (character >= firstLatinAgain && character <= lastLatinAgain)) {
            continue;
        }
        m_all = true; // also when it fails: there is nothing more to load
        load(allFonts());
    }
}

LayoutPtr FontBook::layout(int pixels, bool bold, TextDirection direction) {
    LayoutPtr layout(pango_layout_new(context(direction)));
    pango_layout_set_auto_dir(layout.get(), FALSE);
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    PangoFontDescription* font = pango_font_description_new();
    pango_font_description_set_family_static(font, textFamily);
    pango_font_description_set_weight(font, bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_absolute_size(font, static_cast<double>(pixels) * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), font);
    pango_font_description_free(font);
    return layout;
}

LayoutPtr FontBook::glyph(const std::string& text, double pixels) {
    LayoutPtr layout(pango_layout_new(context(TextDirection::LeftToRight)));
    PangoFontDescription* font = pango_font_description_new();
    pango_font_description_set_family_static(font, glyphFamily);
    pango_font_description_set_absolute_size(font, pixels * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), font);
    pango_font_description_free(font);
    pango_layout_set_text(layout.get(), text.c_str(), static_cast<int>(text.size()));
    return layout;
}

std::string fromWide(const wchar_t* text) {
    std::string bytes;
    appendWide(bytes, text);
    return bytes;
}

void appendWide(std::string& bytes, const wchar_t* text) {
    constexpr gunichar oneByte = 0x7f;
    const size_t length = std::wcslen(text);
    gunichar all = 0;
    for (size_t i = 0; i < length; ++i) {
        all |= static_cast<gunichar>(text[i]);
    }
    if (all <= oneByte) { // nearly every text of a long list
        const size_t start = bytes.size();
        bytes.resize(start + length);
        char* at = bytes.data() + start;
        for (size_t i = 0; i < length; ++i) {
            at[i] = static_cast<char>(text[i]);
        }
        return;
    }
    for (size_t i = 0; i < length; ++i) {
        const auto character = static_cast<gunichar>(text[i]);
        char buffer[6];
        const bool valid = g_unichar_validate(character);
        bytes.append(buffer, static_cast<size_t>(g_unichar_to_utf8(valid ? character : 0xFFFD, buffer)));
    }
}

std::string drawable(const std::string& text) {
    char* valid = g_utf8_make_valid(text.c_str(), static_cast<gssize>(text.size()));
    std::string line(valid);
    g_free(valid);
    if (line.size() > longestDrawn) {
        const char* end = g_utf8_find_prev_char(line.c_str(), line.c_str() + longestDrawn);
        line.resize(static_cast<size_t>(end - line.c_str()));
    }
    for (char& byte : line) {
        if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F) {
            byte = ' ';
        }
    }
    return line;
}

} // namespace zm
