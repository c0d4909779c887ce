#include "platform/linux/pps/PpsLine.h"
#include "sys/pps.h"

#include <cstring>

using zm::PpsLineKind;

namespace {

struct Meaning {
    PpsLineKind kind;
    pps_status_t status;
    int flags;
};
// A purged object has no status of its own: its line is an object line with a flag.
constexpr Meaning Meanings[] = {
    {PpsLineKind::Object, PPS_OBJECT, 0},
    {PpsLineKind::ObjectCreated, PPS_OBJECT_CREATED, PPS_CREATED},
    {PpsLineKind::ObjectDeleted, PPS_OBJECT_DELETED, PPS_DELETED},
    {PpsLineKind::ObjectTruncated, PPS_OBJECT_TRUNCATED, PPS_TRUNCATED},
    {PpsLineKind::ObjectOverflowed, PPS_OBJECT_OVERFLOWED, PPS_OVERFLOWED},
    {PpsLineKind::ObjectPurged, PPS_OBJECT, PPS_PURGED},
    {PpsLineKind::Attribute, PPS_ATTRIBUTE, 0},
    {PpsLineKind::AttributeDeleted, PPS_ATTRIBUTE_DELETED, PPS_DELETED},
};

int indexOf(const char* const* names, const char* name) {
    for (int i = 0; names && names[i]; ++i) {
        if (std::strcmp(names[i], name) == 0) {
            return i;
        }
    }
    return -1;
}

// The view lies in the caller's text, which may be written: ends it with a NUL over the separator behind it.
char* terminated(std::string_view view) {
    char* text = const_cast<char*>(view.data());
    text[view.size()] = '\0';
    return text;
}

} // namespace

pps_status_t ppsparse(char** ppsdata, const char* const* objnames, const char* const* attrnames,
                      pps_attrib_t* info, int /*parse_flags*/) {
    info->attr_name = nullptr;
    info->attr_index = -1;
    info->encoding = nullptr;
    info->value = nullptr;
    info->flags = 0;
    info->options = 0;
    info->option_mask = 0;
    info->line = *ppsdata;
    if (!*ppsdata || !**ppsdata) {
        return PPS_END;
    }
    char* end = std::strchr(*ppsdata, '\n');
    if (!end) {
        info->flags = PPS_INCOMPLETE;
        return PPS_END;
    }
    const auto line = zm::parsePpsLine({*ppsdata, static_cast<size_t>(end - *ppsdata)});
    *ppsdata = end + 1;
    if (!line) {
        *end = '\0';
        return PPS_ERROR;
    }
    const Meaning& meaning = Meanings[static_cast<int>(line->kind)];
    info->flags = meaning.flags;
    info->options = line->options;
    info->option_mask = line->optionMask;
    if (line->kind == PpsLineKind::Attribute || line->kind == PpsLineKind::AttributeDeleted) {
        info->attr_name = terminated(line->name);
        info->attr_index = indexOf(attrnames, info->attr_name);
        // A deleted attribute has empty texts, so that nobody meets a null pointer.
        info->encoding = line->kind == PpsLineKind::Attribute ? terminated(line->encoding) : end;
        info->value = line->kind == PpsLineKind::Attribute ? terminated(line->value) : end;
    } else {
        info->obj_name = terminated(line->name);
        info->obj_index = indexOf(objnames, info->obj_name);
    }
    *end = '\0';
    return meaning.status;
}
