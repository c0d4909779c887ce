#include "services/ctl/Expectation.h"

#include "base/JsonMessage.h"
#include "services/ctl/AnswerData.h"
#include "services/ctl/Numbers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <regex>

namespace zm::ctl {

using Json = nlohmann::json;

/** What a path can begin with. */
struct Expectation::Root {
    std::string_view name;
    std::vector<std::string> command;
    size_t least;        ///< steps of the shortest path
    bool namesItsObject; ///< the second step belongs to the command
    Json (*data)(const std::string& output);
};

/** How found and expected values are compared. */
struct Expectation::Operator {
    std::string_view name;
    bool ofNumbers;
    bool (*holds)(const Expectation& expectation, const Json& found);
};

namespace {

constexpr size_t LeastWords = 3;
constexpr size_t WordsWithLimit = 5;

std::vector<std::string> steps(const std::string& path) {
    std::vector<std::string> result;
    for (size_t at = 0; at <= path.size();) {
        const size_t end = std::min(path.find('.', at), path.size());
        result.push_back(path.substr(at, end - at));
        at = end + 1;
    }
    return result;
}

Json missing() {
    return Json(Json::value_t::discarded);
}

Json element(const Json& list, const std::string& step) {
    if (step == "size") {
        return list.size();
    }
    const auto index = parseNumber<long>(step);
    if (!index) {
        return missing();
    }
    const auto size = static_cast<long>(list.size());
    const long at = *index < 0 ? size + *index : *index;
    return at >= 0 && at < size ? list[static_cast<size_t>(at)] : missing();
}

Json child(const Json& value, const std::string& step) {
    if (value.is_array()) {
        return element(value, step);
    }
    const auto found = value.is_object() ? value.find(step) : value.end();
    return found != value.end() ? *found : missing();
}

bool equal(const std::string& left, const std::string& right) {
    const auto first = parseNumber<double>(left);
    const auto second = parseNumber<double>(right);
    return first && second ? *first == *second : left == right;
}

template <class Compare>
bool ordered(const Json& found, const std::string& value) {
    const auto number = parseNumber<double>(shownValue(found));
    return number && Compare()(*number, *parseNumber<double>(value));
}

} // namespace

std::string shownValue(const Json& value) {
    if (value.is_discarded()) {
        return "nothing";
    }
    return value.is_string() ? value.get<std::string>() : jsonText(value);
}

Result<Expectation> Expectation::parse(const std::vector<std::string>& words) {
    static const std::array<Root, 4> Roots = {{
        {"screen", {"screen"}, 2, false, screenData},
        {"pps", {"pps", "get"}, 3, true, ppsData},
        {"requests", {"requests"}, 2, false, requestsData},
        {"ps", {"ps"}, 2, false, processesData},
    }};
    using E = const Expectation&;
    static constexpr std::array<Operator, 8> Operators = {{
        {"==", false, [](E self, const Json& found) { return equal(shownValue(found), self.m_value); }},
        {"!=", false, [](E self, const Json& found) { return !equal(shownValue(found), self.m_value); }},
        {"<", true, [](E self, const Json& found) { return ordered<std::less<>>(found, self.m_value); }},
        {"<=", true,
         [](E self, const Json& found) { return ordered<std::less_equal<>>(found, self.m_value); }},
        {">", true, [](E self, const Json& found) { return ordered<std::greater<>>(found, self.m_value); }},
        {">=", true,
         [](E self, const Json& found) { return ordered<std::greater_equal<>>(found, self.m_value); }},
        {"contains", false,
         [](E self, const Json& found) {
             return found.is_array()
                        ? std::any_of(found.begin(), found.end(),
                                      [&](const Json& each) { return equal(shownValue(each), self.m_value); })
                        : shownValue(found).find(self.m_value) != std::string::npos;
         }},
        {"matches", false,
         [](E self, const Json& found) {
             return std::regex_search(shownValue(found), std::regex(self.m_value));
         }},
    }};
    const auto named = [](const auto& rows, const std::string& name) {
        const auto row =
            std::find_if(rows.begin(), rows.end(), [&](const auto& r) { return r.name == name; });
        return row == rows.end() ? nullptr : &*row;
    };

    if (words.size() != LeastWords && (words.size() != WordsWithLimit || words[3] != "within")) {
        return Error{"\"expect\" takes PATH OP VALUE [within MS]"};
    }
    Expectation result;
    result.m_path = steps(words[0]);
    result.m_root = named(Roots, result.m_path[0]);
    result.m_operator = named(Operators, words[1]);
    result.m_value = words[2];
    if (!result.m_root || result.m_path.size() < result.m_root->least) {
        return Error{"\"" + words[0] + "\" is no path into screen, pps.OBJ.ATTRIBUTE, requests or ps"};
    }
    if (!result.m_operator) {
        return Error{"\"" + words[1] + "\" is none of ==, !=, <, <=, >, >=, contains, matches"};
    }
    if (result.m_operator->ofNumbers && !parseNumber<double>(result.m_value)) {
        return Error{"\"" + result.m_value + "\" is no number"};
    }
    if (result.m_operator->name == "matches") {
        try {
            static_cast<void>(std::regex(result.m_value));
        } catch (const std::regex_error& error) {
            return Error{"\"" + result.m_value + "\" is no regular expression: " + error.what()};
        }
    }
    if (words.size() == WordsWithLimit) {
        const auto limit = parseNumber<int>(words[4]);
        if (!limit || *limit < 0) {
            return Error{"\"" + words[4] + "\" are no milliseconds"};
        }
        result.m_limit = std::chrono::milliseconds(*limit);
    }
    return result;
}

std::vector<std::string> Expectation::command() const {
    std::vector<std::string> words = m_root->command;
    if (m_root->namesItsObject) {
        words.push_back(m_path[1]);
    }
    return words;
}

Json Expectation::find(const std::string& output) const {
    Json value = m_root->data(output);
    for (size_t i = m_root->namesItsObject ? 2 : 1; i < m_path.size(); ++i) {
        value = child(value, m_path[i]);
    }
    return value;
}

bool Expectation::holds(const Json& found) const {
    return !found.is_discarded() && m_operator->holds(*this, found);
}

std::string Expectation::text() const {
    std::string path;
    for (const auto& step : m_path) {
        path += (path.empty() ? "" : ".") + step;
    }
    return path + " " + std::string(m_operator->name) + " " + m_value;
}

} // namespace zm::ctl
