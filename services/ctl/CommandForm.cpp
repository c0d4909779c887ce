#include "services/ctl/CommandForm.h"

#include "services/ctl/CommandTexts.h"
#include "services/ctl/Names.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace zm {

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
    return contains(alternatives, word) || std::any_of(alternatives.begin(), alternatives.end(), isKind);
}

void offer(const Words& alternatives, CommandForm::Place& place) {
    for (const auto& each : alternatives) {
        (isKind(each) ? place.kinds : place.words).push_back(each);
    }
}

} // namespace

CommandForm::CommandForm(std::string_view usage) {
    const Words words = split(std::string(usage), ' ');
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
        word.erase(word.find_last_not_of(']') + 1);
        const bool repeats = word.ends_with("...");
        word.erase(word.size() - (repeats ? 3 : 0));
        m_parts.push_back({split(word, '|'), optional, repeats});
    }
}

CommandForm::Place CommandForm::behind(const Words& words) const {
    Place place;
    size_t at = 0;
    Words used;
    const Option* open = nullptr; // its value comes next
    for (const auto& word : words) {
        if (open) {
            open = nullptr;
            continue;
        }
        const auto option = std::find_if(m_options.begin(), m_options.end(),
                                         [&](const Option& each) { return each.name == word; });
        if (option != m_options.end()) {
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
        at += m_parts[at].repeats ? 0 : 1;
    }
    place.fits = true;
    if (open) {
        offer(open->value, place);
        return place;
    }
    size_t next = at;
    for (; next < m_parts.size(); ++next) {
        offer(m_parts[next].alternatives, place);
        if (!m_parts[next].optional && !m_parts[next].repeats) {
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

std::string wrongUsageText(const Words& words, const std::string& why) {
    std::string reason = why;
    for (size_t i = 1; i < words.size() && reason.empty(); ++i) {
        const Words before(words.begin(), words.begin() + static_cast<long>(i));
        const auto place = placeBehind(before);
        const bool known = !place.kinds.empty() || place.words.empty() || contains(place.words, words[i]);
        if (!known && place.fits) {
            std::string what = "\"zmctl";
            for (const auto& word : before) {
                what.append(" ").append(word);
            }
            reason = unknownWord(what + "\" with", words[i], place.words);
        }
    }
    return (reason.empty() ? "" : "zmctl: " + reason + "\n") + usageText(*findCommandText(words[0]));
}

} // namespace zm
