#pragma once

#include "sys/pps.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

/** Publications for the rest of the head unit, in this order. */
enum PUBLISH_EN { PUBLISH_NOTHING = 0, PUBLISH_MEDIA_INFO = 1, PUBLISH_ID3 = 2 };

inline constexpr int NO_MESSAGE = 0;

/** What follows once an attribute has been stored: a view message, then the publications. */
struct PPSReaction {
    int nMessage = NO_MESSAGE;      ///< DISC_VMSG_EN
    int nPublish = PUBLISH_NOTHING; ///< PUBLISH_EN, added up
};

/**
 * All about one attribute of a monitored object. Its place in the module's table is its index, by which the
 * parser tells the controller of it. An index without an attribute has an empty name.
 */
template <class Decode>
struct PPSAttributeRow {
    std::string_view name;
    Decode decode; ///< writes the value into the state store; null: nothing is stored
    PPSReaction reaction;
};

/** The decoder of an attribute, as a method of its module. */
template <class Module>
using PPSSubscribe = void (Module::*)(char* encoding, char* value);

/** Whether each name stands in the table once. */
template <class Row, size_t N>
constexpr bool PPSNamesDiffer(const Row (&rows)[N]) {
    for (size_t i = 0; i < N; ++i) {
        for (size_t j = i + 1; j < N; ++j) {
            if (!rows[i].name.empty() && rows[i].name == rows[j].name) {
                return false;
            }
        }
    }
    return true;
}

/** The attribute's texts; an attribute that was deleted has empty ones. */
inline char* PPSText(char* text) {
    static char s_szEmpty[1] = {};
    return text ? text : s_szEmpty;
}

/** The index of the name; -1 when it is missing or unknown. */
template <class Row, size_t N>
int PPSIndex(const Row (&rows)[N], const char* name) {
    for (size_t i = 0; name && i < N; ++i) {
        if (!rows[i].name.empty() && rows[i].name == name) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

/** Hands the attribute to the row of its name; the row's index, or -1 when the name is missing or unknown. */
template <class Module, size_t N>
int PPSDispatch(Module& module, const PPSAttributeRow<PPSSubscribe<Module>> (&rows)[N], pps_attrib_t* attr) {
    const int nIndex = PPSIndex(rows, attr->attr_name);
    if (nIndex >= 0 && rows[nIndex].decode) {
        // A copy: called as rows[i].decode, GCC 12 with its sanitizers calls that of the first row.
        const auto decode = rows[nIndex].decode;
        (module.*decode)(PPSText(attr->encoding), PPSText(attr->value));
    }
    return nIndex;
}

/** What follows the attribute of that index; nothing for -1. */
template <class Row, size_t N>
PPSReaction PPSReactionTo(const Row (&rows)[N], int nIndex) {
    return nIndex >= 0 && nIndex < static_cast<int>(N) ? rows[nIndex].reaction : PPSReaction{};
}

/** The decimal number that the text begins with, 0 if none. Defined for every text, unlike atoi. */
inline int PPSNumber(const char* value) {
    return static_cast<int>(std::strtol(value, nullptr, 10));
}
inline unsigned PPSUnsigned(const char* value) {
    return static_cast<unsigned>(std::strtoul(value, nullptr, 10));
}
