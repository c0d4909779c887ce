#include "services/ctl/CommandForm.h"

#include "services/ctl/CommandTexts.h"
#include "services/ctl/Names.h"
#include "services/ctl/Numbers.h"
#include "services/ctl/WordKinds.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <utility>

namespace zm::ctl {

namespace {

using Words = std::vector<std::string>;

Words split(const std::string& text, char separator) {
    std::istringstream stream(text);
    Words parts;
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

bool isKind(const std::string& word) {
    return !word.empty() && std::isupper(static_cast<unsigned char>(word[0]));
}

bool contains(const Words& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

// Whether `word` may stand for one of these.
bool accepts(const Words& alternatives, const std::string& word) {
    return std::any_of(alternatives.begin(), alternatives.end(), [&](const std::string& each) {
        return isKind(each) ? wordKind(each).accepts(word) : each == word;
    });
}

void offer(const Words& alternatives, CommandForm::Place& place) {
    for (const auto& each : alternatives) {
        (isKind(each) ? place.kinds : place.words).push_back(each);
    }
}

} // namespace

CommandForm::CommandForm(std::string_view usage) {
    const Words words = split(std::string(usage), ' ');
    bool group = false; // inside "[within MS]", whose words go together
    for (size_t i = 0; i < words.size(); ++i) {
        std::string word = words[i];
        const bool optional = word.starts_with('[');
        word.erase(0, optional ? 1 : 0);
        if (optional && word.starts_with('-')) {
            const bool hasValue = !word.ends_with(']');
            std::string value = hasValue ? words[++i] : std::string();
            word.erase(word.find_last_not_of(']') + 1);
            value.erase(value.find_last_not_of(']') + 1);
            m_options.push_back({word, split(value, '|')});
            continue;
        }
        const bool inGroup = group || optional;
        group = inGroup && !word.ends_with(']');
        word.erase(word.find_last_not_of(']') + 1);
        const bool repeats = word.ends_with("...");
        word.erase(word.size() - (repeats ? 3 : 0));
        m_parts.push_back({split(word, '|'), inGroup, repeats});
    }
}

CommandForm::Place CommandForm::behind(const Words& words) const {
    Place place;
    size_t at = 0;
    Words used;
    const Option* open = nullptr; // its value comes next
    bool repeated = false;        // the word that may repeat was there
    for (const auto& word : words) {
        if (open) {
            if (!accepts(std::exchange(open, nullptr)->value, word)) {
                return place;
            }
            continue;
        }
        const auto option = std::find_if(m_options.begin(), m_options.end(),
                                         [&](const Option& each) { return each.name == word; });
        if (option != m_options.end() && !contains(used, word)) {
            used.push_back(word);
            open = option->value.empty() ? nullptr : &*option;
            continue;
        }
        // An optional word that does not fit was left out.
        while (at < m_parts.size() && m_parts[at].optional && !accepts(m_parts[at].alternatives, word)) {
            ++at;
        }
        if (at == m_parts.size() || !accepts(m_parts[at].alternatives, word)) {
            return place;
        }
        repeated = m_parts[at].repeats;
        at += repeated ? 0 : 1;
    }
    place.fits = true;
    if (open) {
        offer(open->value, place);
        return place;
    }
    size_t next = at;
    for (; next < m_parts.size(); ++next) {
        offer(m_parts[next].alternatives, place);
        if (!m_parts[next].optional && !repeated) {
            break;
        }
    }
    place.mayEnd = next == m_parts.size();
    // Before a word of the command's own its options would only be in the way.
    if (at > 0 && (place.mayEnd || !place.kinds.empty())) {
        for (const auto& option : m_options) {
            if (!contains(used, option.name)) {
                place.words.push_back(option.name);
            }
        }
    }
    return place;
}

const std::vector<CommandForm>& CommandForm::all() {
    static const std::vector<CommandForm> forms = [] {
        std::vector<CommandForm> result;
        for (const auto& text : commandTexts()) {
            for (const auto& usage : split(std::string(text.usage), '\n')) {
                result.emplace_back(usage);
            }
        }
        return result;
    }();
    return forms;
}

CommandForm::Place placeBehind(const Words& words) {
    CommandForm::Place all;
    for (const auto& form : CommandForm::all()) {
        const auto place = form.behind(words);
        all.fits = all.fits || place.fits;
        all.mayEnd = all.mayEnd || place.mayEnd;
        all.words.insert(all.words.end(), place.words.begin(), place.words.end());
        all.kinds.insert(all.kinds.end(), place.kinds.begin(), place.kinds.end());
    }
    for (auto* list : {&all.words, &all.kinds}) {
        std::sort(list->begin(), list->end());
        list->erase(std::unique(list->begin(), list->end()), list->end());
    }
    return all;
}

namespace {

std::string quoted(const Words& words) {
    std::string text = "\"zmctl";
    for (const auto& word : words) {
        text += " " + word;
    }
    return text + "\"";
}

std::string fittingWords(const CommandForm::Place& place) {
    Words all = place.words;
    if (!place.mayEnd) {
        std::erase_if(all, [](const std::string& word) { return word.starts_with('-'); });
    }
    for (const auto& kind : place.kinds) {
        const std::string what(wordKind(kind).what);
        all.push_back(kind + (what.empty() ? "" : " (" + what + ")"));
    }
    std::string text;
    for (const auto& each : all) {
        text += (text.empty() ? "" : ", ") + each;
    }
    return text;
}

// A word of digits alone that cannot be parsed is a number too large.
bool isTooLarge(const std::string& word) {
    const std::string digits = word.substr(word.starts_with('-') ? 1 : 0);
    return !digits.empty() && digits.find_first_not_of("0123456789") == std::string::npos &&
           !parseNumber<int>(word);
}

std::string misfit(const Words& before, const std::string& word) {
    const auto place = placeBehind(before);
    const std::string beginning = "\"" + word + "\" does not fit behind " + quoted(before) + "; ";
    const std::string meant = meantWord(word, place.words);
    if (!meant.empty()) {
        return beginning + "did you mean \"" + meant + "\"?";
    }
    if (!place.kinds.empty() && isTooLarge(word)) {
        return beginning + "it is too large";
    }
    const std::string fitting = fittingWords(place);
    return beginning + (fitting.empty() ? "nothing follows there" : "what fits is " + fitting);
}

} // namespace

std::string whyUnfit(const Words& words) {
    for (size_t end = 1; end <= words.size(); ++end) {
        const Words before(words.begin(), words.begin() + static_cast<long>(end));
        const auto place = placeBehind(before);
        if (!place.fits) {
            return misfit({before.begin(), before.end() - 1}, before.back());
        }
        if (end == words.size() && !place.mayEnd) {
            return quoted(words) + " is not complete; what fits behind it is " + fittingWords(place);
        }
    }
    return {};
}

std::string unknownCommandText(const std::string& name) {
    Words names;
    for (const auto& text : commandTexts()) {
        names.emplace_back(text.name);
    }
    std::string meant = meantWord(name, names);
    const Words keys = namesOf(hardKeys());
    if (contains(keys, name)) {
        meant = "key " + name;
    }
    for (auto each = names.begin(); each != names.end() && meant.empty(); ++each) {
        meant = contains(placeBehind({*each}).words, name) ? *each + " " + name : "";
    }
    return "zmctl: there is no command \"" + name + "\"; " +
           (meant.empty() ? "" : "did you mean \"" + meant + "\"? ") + "\"zmctl help\" lists them";
}

std::string wrongUsageText(const Words& words, const std::string& why) {
    const std::string reason = why.empty() ? whyUnfit(words) : why;
    return (reason.empty() ? "" : "zmctl: " + reason + "\n") + usageText(*findCommandText(words[0]));
}

} // namespace zm::ctl
