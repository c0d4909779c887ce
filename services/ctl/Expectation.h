#pragma once

#include "base/Result.h"

#include <nlohmann/json_fwd.hpp>

#include <chrono>
#include <string>
#include <vector>

namespace zm::ctl {

/** One comparison that `expect` asks for: "PATH OP VALUE [within MS]". A missing value fulfils none. */
class Expectation {
public:
    /** From the words behind `expect`; an error says which of them is wrong. */
    static Result<Expectation> parse(const std::vector<std::string>& words);

    /** The command that shows what the path looks at: {"pps", "get", "zelmar/disc/status"}. */
    std::vector<std::string> command() const;
    /** The path's value in the output of that command; discarded if there is none. */
    nlohmann::json find(const std::string& output) const;
    bool holds(const nlohmann::json& found) const;
    std::chrono::milliseconds limit() const { return m_limit; }
    /** "screen.main.window == 6". */
    std::string text() const;

private:
    struct Root;
    struct Operator;

    std::vector<std::string> m_path; ///< the root first; of pps, the object is one step
    const Root* m_root = nullptr;
    const Operator* m_operator = nullptr;
    std::string m_value;
    std::chrono::milliseconds m_limit{2000};
};

/** A value as it is printed: texts without quotes, "nothing" for a missing one. */
std::string shownValue(const nlohmann::json& value);

} // namespace zm::ctl
