#include "platform/linux/qdb/QdbFormat.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace zm {

namespace {

/** One conversion, as it stands in the format. */
struct Conversion {
    std::string flags;
    int width = -1;
    int precision = -1;
    std::string length; ///< "", "hh", "h", "l", "ll", "j", "z", "t", "L"
    char kind = '\0';
};

constexpr std::string_view INTEGERS = "diouxX";
constexpr std::string_view FLOATS = "eEfFgGaA";
constexpr std::string_view TEXTS = "sqQz";
constexpr int LargestField = 1'000'000;

/** Walks through one format with its arguments; a copy of the list, as each argument can be taken once. */
class Formatter {
public:
    Formatter(const char* format, va_list args) : m_next(format) { va_copy(m_args, args); }
    ~Formatter() { va_end(m_args); }
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;

    std::string run() {
        while (*m_next) {
            const char* percent = std::strchr(m_next, '%');
            m_text.append(m_next, percent ? static_cast<size_t>(percent - m_next) : std::strlen(m_next));
            if (!percent) {
                break;
            }
            m_next = percent;
            if (!convert()) {
                m_text += *m_next++;
            }
        }
        return std::move(m_text);
    }

private:
    bool convert() {
        Conversion conversion;
        const char* end = scan(m_next + 1, conversion);
        if (!end) {
            return false;
        }
        // Only now are arguments taken, in their order: width, precision, value.
        m_next = end;
        if (conversion.width == FromArgument) {
            conversion.width = va_arg(m_args, int);
            if (conversion.width < 0) {
                conversion.flags += '-';
                conversion.width = conversion.width < -LargestField ? LargestField : -conversion.width;
            }
        }
        if (conversion.precision == FromArgument) {
            conversion.precision = va_arg(m_args, int);
        }
        put(conversion);
        return true;
    }

    static constexpr int FromArgument = -2;

    static const char* scanNumber(const char* at, int& number) {
        if (*at == '*') {
            number = FromArgument;
            return at + 1;
        }
        for (; *at >= '0' && *at <= '9'; ++at) {
            number = (number < 0 ? 0 : number) * 10 + (*at - '0');
            number = number > LargestField ? LargestField : number;
        }
        return at;
    }

    /** Reads a conversion behind its per-cent sign; its end, or null if it is none. */
    static const char* scan(const char* at, Conversion& conversion) {
        while (*at && std::strchr("-+ #0", *at)) {
            conversion.flags += *at++;
        }
        at = scanNumber(at, conversion.width);
        if (*at == '.') {
            conversion.precision = 0;
            at = scanNumber(at + 1, conversion.precision);
        }
        for (const char* length : {"hh", "ll", "h", "l", "j", "z", "t", "L"}) {
            size_t size = std::strlen(length);
            if (std::strncmp(at, length, size) == 0 && isSized(at[size], *length)) {
                conversion.length = length;
                at += size;
                break;
            }
        }
        conversion.kind = *at;
        bool known = *at && (isOneOf(INTEGERS, *at) || isOneOf(FLOATS, *at) || isOneOf(TEXTS, *at) ||
                             isOneOf("cp%", *at));
        return known ? at + 1 : nullptr;
    }

    static bool isOneOf(std::string_view set, char c) { return set.find(c) != std::string_view::npos; }
    static bool isSized(char kind, char length) {
        return kind && (isOneOf(INTEGERS, kind) ? length != 'L'
                                                : (length == 'L' || length == 'l') && isOneOf(FLOATS, kind));
    }

    void put(const Conversion& conversion) {
        if (conversion.kind == '%') {
            m_text += '%';
        } else if (isOneOf(TEXTS, conversion.kind)) {
            putText(conversion);
        } else if (isOneOf(FLOATS, conversion.kind)) {
            if (conversion.length == "L") {
                putPrinted(conversion, va_arg(m_args, long double));
            } else {
                putPrinted(conversion, va_arg(m_args, double));
            }
        } else if (conversion.kind == 'p') {
            putPrinted(conversion, va_arg(m_args, void*));
        } else if (conversion.length == "l") {
            putPrinted(conversion, va_arg(m_args, long));
        } else if (conversion.length == "ll" || conversion.length == "j") {
            putPrinted(conversion, va_arg(m_args, long long));
        } else if (conversion.length == "z" || conversion.length == "t") {
            putPrinted(conversion, va_arg(m_args, ptrdiff_t));
        } else {
            putPrinted(conversion, va_arg(m_args, int));
        }
    }

    template <class Value>
    void putPrinted(const Conversion& conversion, Value value) {
        std::string format = '%' + conversion.flags;
        if (conversion.width >= 0) {
            format += std::to_string(conversion.width);
        }
        if (conversion.precision >= 0) {
            format += '.' + std::to_string(conversion.precision);
        }
        format += conversion.length + conversion.kind;
        int length = std::snprintf(nullptr, 0, format.c_str(), value);
        if (length > 0) {
            std::string text(static_cast<size_t>(length), '\0');
            std::snprintf(text.data(), text.size() + 1, format.c_str(), value);
            m_text += text;
        }
    }

    void putText(const Conversion& conversion) {
        char* source = va_arg(m_args, char*);
        std::string text;
        if (source) {
            text = conversion.precision >= 0
                       ? std::string(source, strnlen(source, static_cast<size_t>(conversion.precision)))
                       : std::string(source);
        } else {
            text = conversion.kind == 'Q' ? "NULL" : "(null)";
        }
        if (source && (conversion.kind == 'q' || conversion.kind == 'Q')) {
            for (size_t at = text.find('\''); at != std::string::npos; at = text.find('\'', at + 2)) {
                text.insert(at, 1, '\'');
            }
            text = conversion.kind == 'Q' ? '\'' + text + '\'' : text;
        }
        size_t padding =
            static_cast<int>(text.size()) < conversion.width ? conversion.width - text.size() : 0;
        bool left = isOneOf(conversion.flags, '-');
        m_text.append(left ? 0 : padding, ' ').append(text).append(left ? padding : 0, ' ');
        if (conversion.kind == 'z') {
            std::free(source);
        }
    }

    const char* m_next;
    va_list m_args;
    std::string m_text;
};

} // namespace

std::string qdbFormat(const char* format, va_list args) {
    return Formatter(format, args).run();
}

} // namespace zm
