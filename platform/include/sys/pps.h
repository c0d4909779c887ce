#pragma once

/*
 * libpps: parsing, decoding and encoding of PPS text and of the JSON values inside it.
 * All functions may be called from any thread; one decoder or encoder belongs to one thread at a time.
 * Objects themselves are opened through the framework (PPSFileBase) or, on the platform side, through
 * PpsFile.
 */

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    PPS_ERROR = -1,
    PPS_END = 0,
    PPS_OBJECT,
    PPS_OBJECT_CREATED,
    PPS_OBJECT_DELETED,
    PPS_OBJECT_TRUNCATED,
    PPS_ATTRIBUTE,
    PPS_ATTRIBUTE_DELETED,
    PPS_OBJECT_OVERFLOWED
} pps_status_t;

typedef enum {
    PPS_INCOMPLETE = 0x1,
    PPS_DELETED = 0x2,
    PPS_CREATED = 0x4,
    PPS_TRUNCATED = 0x8,
    PPS_PURGED = 0x10,
    PPS_OVERFLOWED = 0x20
} pps_attrib_flags_t;

typedef enum { PPS_NOPERSIST = 0x1, PPS_ITEM = 0x2 } pps_options_t;

/* One parsed line. The pointers are C strings inside the caller's text and live as long as it. */
typedef struct {
    char* obj_name;
    int obj_index;
    char* attr_name;
    int attr_index;
    char* encoding;
    char* value;
    int flags;
    int options;
    int option_mask;
    int quality;
    char* line;
    int reserved[3];
} pps_attrib_t;

/*
 * Parses one line of the NUL-terminated text `*ppsdata`, overwrites its separators and moves `*ppsdata` on.
 * obj_name and obj_index change only at an object line. The indexes are positions in the NULL-terminated
 * arrays of names (which may be NULL) or -1. `parse_flags` is 0.
 */
pps_status_t ppsparse(char** ppsdata, const char* const* objnames, const char* const* attrnames,
                      pps_attrib_t* info, int parse_flags);

/* ---- decoder ---- */

typedef enum {
    PPS_DECODER_OK = 0,
    PPS_DECODER_NO_MEM,
    PPS_DECODER_BAD_TYPE,
    PPS_DECODER_NOT_FOUND,
    PPS_DECODER_PARSE_ERROR,
    PPS_DECODER_DELETED,
    PPS_DECODER_CONVERSION_FAILED,
    PPS_DECODER_POP_AT_ROOT
} pps_decoder_error_t;

typedef enum {
    PPS_TYPE_NULL,
    PPS_TYPE_BOOL,
    PPS_TYPE_NUMBER,
    PPS_TYPE_STRING,
    PPS_TYPE_ARRAY,
    PPS_TYPE_OBJECT,
    PPS_TYPE_NONE,
    PPS_TYPE_UNKNOWN,
    PPS_TYPE_DELETED
} pps_node_type_t;

struct pps_decoder_state;
typedef struct {
    struct pps_decoder_state* state;
} pps_decoder_t;

/*
 * A decoder holds one tree and stands in one of its containers. Above the parsed value lies a virtual root,
 * so that parse, push(NULL), gets and pop end without an error. The first error stays in the status until it
 * is cleared or the next parse; every call also returns its own result. Strings given out live until cleanup
 * or the next parse. Texts nested deeper than 64 levels are a parse error.
 */
pps_decoder_error_t pps_decoder_initialize(pps_decoder_t* decoder, char* str);
pps_decoder_error_t pps_decoder_parse_pps_str(pps_decoder_t* decoder, char* str);
pps_decoder_error_t pps_decoder_parse_json_str(pps_decoder_t* decoder, const char* str);
pps_decoder_error_t pps_decoder_push(pps_decoder_t* decoder, const char* name);
pps_decoder_error_t pps_decoder_push_object(pps_decoder_t* decoder, const char* name);
pps_decoder_error_t pps_decoder_push_array(pps_decoder_t* decoder, const char* name);
pps_decoder_error_t pps_decoder_pop(pps_decoder_t* decoder);
/* A failed get leaves `*value` and the position as they were; a successful one moves to the next element. */
pps_decoder_error_t pps_decoder_get_int(pps_decoder_t* decoder, const char* name, int* value);
pps_decoder_error_t pps_decoder_get_double(pps_decoder_t* decoder, const char* name, double* value);
pps_decoder_error_t pps_decoder_get_bool(pps_decoder_t* decoder, const char* name, bool* value);
pps_decoder_error_t pps_decoder_get_string(pps_decoder_t* decoder, const char* name, const char** value);
pps_node_type_t pps_decoder_type(pps_decoder_t* decoder, const char* name);
pps_decoder_error_t pps_decoder_status(pps_decoder_t* decoder, bool clear);
void pps_decoder_cleanup(pps_decoder_t* decoder);

/* ---- encoder ---- */

typedef enum {
    PPS_ENCODER_OK = 0,
    PPS_ENCODER_NO_MEM,
    PPS_ENCODER_BAD_NESTING,
    PPS_ENCODER_INVALID_VALUE,
    PPS_ENCODER_MISSING_ATTRIBUTE_NAME,
    PPS_ENCODER_NOT_FOUND
} pps_encoder_error_t;

struct pps_encoder_state;
typedef struct {
    struct pps_encoder_state* state;
} pps_encoder_t;

/*
 * Builds PPS text (encodeJSON false: the top object starts with its "@name" line, attributes take the
 * simplest encoding) or one JSON text (true). The first error stays until reset; the buffer is NULL after an
 * error and while an object is open. The buffer is the encoder's until the next add, reset or cleanup.
 */
void pps_encoder_initialize(pps_encoder_t* encoder, bool encodeJSON);
void pps_encoder_reset(pps_encoder_t* encoder);
void pps_encoder_cleanup(pps_encoder_t* encoder);
pps_encoder_error_t pps_encoder_start_object(pps_encoder_t* encoder, const char* name);
pps_encoder_error_t pps_encoder_end_object(pps_encoder_t* encoder);
pps_encoder_error_t pps_encoder_start_array(pps_encoder_t* encoder, const char* name);
pps_encoder_error_t pps_encoder_end_array(pps_encoder_t* encoder);
pps_encoder_error_t pps_encoder_add_int(pps_encoder_t* encoder, const char* name, int value);
pps_encoder_error_t pps_encoder_add_double(pps_encoder_t* encoder, const char* name, double value);
pps_encoder_error_t pps_encoder_add_bool(pps_encoder_t* encoder, const char* name, bool value);
pps_encoder_error_t pps_encoder_add_string(pps_encoder_t* encoder, const char* name, const char* value);
pps_encoder_error_t pps_encoder_add_null(pps_encoder_t* encoder, const char* name);
pps_encoder_error_t pps_encoder_add_json(pps_encoder_t* encoder, const char* name, const char* json);
const char* pps_encoder_buffer(pps_encoder_t* encoder);
/* Bytes in the buffer, without the final NUL. */
int pps_encoder_length(pps_encoder_t* encoder);

#ifdef __cplusplus
}
#endif
