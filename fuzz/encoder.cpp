// What the encoder writes, the decoder gives back equal: the input is a list of calls.
#include "fuzz/support/Check.h"
#include "platform/linux/pps/PpsLine.h"
#include "sys/pps.h"

#include <fuzzer/FuzzedDataProvider.h>
#include <glib.h>

#include <bit>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

using namespace zm::fuzz;

namespace {

constexpr int MostCalls = 200;
constexpr size_t DeepestLevel = 60;

enum class Mode { Pps, Json };

// What was given to the encoder.
struct Value {
    pps_node_type_t type = PPS_TYPE_NULL;
    std::string name;
    std::string text;
    double number = 0;
    int whole = 0;
    bool isWhole = false;
    bool truth = false;
    std::vector<std::unique_ptr<Value>> children;
};

class Writer {
public:
    Writer(FuzzedDataProvider& input, Mode mode) : m_input(input), m_mode(mode) {
        pps_encoder_initialize(&m_encoder, mode == Mode::Json);
        m_open.push_back(&m_root);
    }
    ~Writer() { pps_encoder_cleanup(&m_encoder); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void write() {
        start(PPS_TYPE_OBJECT, m_mode == Mode::Pps ? "@object" : "");
        for (int i = 0; i < MostCalls && m_input.remaining_bytes() > 0; ++i) {
            step();
        }
        while (m_open.size() > 1) {
            end();
        }
    }
    const Value& root() const { return *m_root.children.front(); }
    // Null after an error.
    const char* written() { return pps_encoder_buffer(&m_encoder); }
    int length() { return pps_encoder_length(&m_encoder); }

private:
    Value& top() { return *m_open.back(); }

    Value& remember(pps_node_type_t type, const std::string& name) {
        auto& value = *top().children.emplace_back(std::make_unique<Value>());
        value.type = type;
        value.name = name;
        return value;
    }
    void start(pps_node_type_t type, const std::string& name) {
        type == PPS_TYPE_OBJECT ? pps_encoder_start_object(&m_encoder, name.c_str())
                                : pps_encoder_start_array(&m_encoder, name.c_str());
        m_open.push_back(&remember(type, name));
    }
    void end() {
        top().type == PPS_TYPE_OBJECT ? pps_encoder_end_object(&m_encoder)
                                      : pps_encoder_end_array(&m_encoder);
        m_open.pop_back();
    }

    // Attributes have names of their own, so that all of them are still there at the end.
    std::string newName() {
        const bool attribute = m_mode == Mode::Pps && m_open.size() == 2;
        return attribute ? "a" + std::to_string(top().children.size()) : text();
    }
    std::string text() {
        // C strings end at the first NUL; a PPS attribute that is not JSON may hold any byte.
        std::string result = m_input.ConsumeRandomLengthString(64).c_str();
        const bool plain = m_mode == Mode::Pps && m_open.size() == 2;
        return plain || g_utf8_validate(result.c_str(), -1, nullptr) ? result : "text";
    }

    void step() {
        enum class Call { Object, Array, End, Int, Double, Bool, String, Null, kMaxValue = Null };
        const auto call = m_input.ConsumeEnum<Call>();
        if (call == Call::End) {
            if (m_open.size() > 2) {
                end();
            }
            return;
        }
        const std::string name = newName();
        const char* const cName = name.c_str();
        switch (call) {
        case Call::Object:
        case Call::Array:
            if (m_open.size() < DeepestLevel) {
                start(call == Call::Object ? PPS_TYPE_OBJECT : PPS_TYPE_ARRAY, name);
            }
            break;
        case Call::Int: {
            auto& value = remember(PPS_TYPE_NUMBER, name);
            value.whole = m_input.ConsumeIntegral<int>();
            value.isWhole = true;
            value.number = value.whole;
            pps_encoder_add_int(&m_encoder, cName, value.whole);
            break;
        }
        case Call::Double: {
            const auto number = std::bit_cast<double>(m_input.ConsumeIntegral<uint64_t>());
            pps_encoder_add_double(&m_encoder, cName, number);
            remember(PPS_TYPE_NUMBER, name).number = number;
            break;
        }
        case Call::Bool: {
            const bool truth = m_input.ConsumeBool();
            pps_encoder_add_bool(&m_encoder, cName, truth);
            remember(PPS_TYPE_BOOL, name).truth = truth;
            break;
        }
        case Call::String: {
            const std::string value = text();
            pps_encoder_add_string(&m_encoder, cName, value.c_str());
            remember(PPS_TYPE_STRING, name).text = value;
            break;
        }
        default:
            pps_encoder_add_null(&m_encoder, cName);
            remember(PPS_TYPE_NULL, name);
        }
    }

    FuzzedDataProvider& m_input;
    Mode m_mode;
    pps_encoder_t m_encoder{};
    Value m_root;
    std::vector<Value*> m_open;
};

// Whether the encoder must have refused it.
bool impossible(const Value& value) {
    if (value.type == PPS_TYPE_NUMBER && !std::isfinite(value.number)) {
        return true;
    }
    for (const auto& child : value.children) {
        if (impossible(*child)) {
            return true;
        }
    }
    return false;
}

void compare(pps_decoder_t& decoder, const Value& value);

// The decoder stands in the container.
void compareChildren(pps_decoder_t& decoder, const Value& container) {
    for (const auto& child : container.children) {
        check(pps_decoder_type(&decoder, nullptr) == child->type, "a value keeps its type");
        if (child->type == PPS_TYPE_NULL) {
            return; // has no value to read, so nobody reads on behind it by position
        }
        compare(decoder, *child);
    }
    check(pps_decoder_type(&decoder, nullptr) == PPS_TYPE_NONE, "nothing is added");
}

void compare(pps_decoder_t& decoder, const Value& value) {
    const char* text = nullptr;
    double number = 0;
    int whole = 0;
    bool truth = false;
    switch (value.type) {
    case PPS_TYPE_STRING:
        check(pps_decoder_get_string(&decoder, nullptr, &text) == PPS_DECODER_OK && value.text == text,
              "a text comes back");
        break;
    case PPS_TYPE_NUMBER:
        if (value.isWhole) {
            check(pps_decoder_get_int(&decoder, nullptr, &whole) == PPS_DECODER_OK && whole == value.whole,
                  "a whole number comes back");
        } else {
            check(pps_decoder_get_double(&decoder, nullptr, &number) == PPS_DECODER_OK &&
                      number == value.number,
                  "a number comes back");
        }
        break;
    case PPS_TYPE_BOOL:
        check(pps_decoder_get_bool(&decoder, nullptr, &truth) == PPS_DECODER_OK && truth == value.truth,
              "a Boolean comes back");
        break;
    default:
        check(pps_decoder_push(&decoder, nullptr) == PPS_DECODER_OK, "a container comes back");
        compareChildren(decoder, value);
        check(pps_decoder_pop(&decoder) == PPS_DECODER_OK, "a container closes");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    const Mode mode = input.ConsumeBool() ? Mode::Pps : Mode::Json;
    Writer writer(input, mode);
    writer.write();
    if (!writer.written()) {
        check(impossible(writer.root()), "what can be written is written");
        return 0;
    }
    check(!impossible(writer.root()), "what cannot be written is refused");
    std::string text = writer.written();
    check(static_cast<int>(text.size()) == writer.length(), "the length is the text's");
    pps_decoder_t decoder;
    pps_decoder_initialize(&decoder, nullptr);
    check((mode == Mode::Pps ? pps_decoder_parse_pps_str(&decoder, text.data())
                             : pps_decoder_parse_json_str(&decoder, text.c_str())) == PPS_DECODER_OK,
          "what was written can be read");
    compare(decoder, writer.root());
    pps_decoder_cleanup(&decoder);
    return 0;
}
