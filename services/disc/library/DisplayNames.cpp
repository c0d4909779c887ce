#include "services/disc/library/DisplayNames.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string_view>

namespace zm::disc::library {

namespace {

// A longer number is a year or a part of the title.
constexpr size_t MaxTrackDigits = 3;
constexpr size_t TrackOfDiscDigits = 2;

constexpr std::string_view dashes[] = {"-", "–", "—"};
constexpr std::string_view stops[] = {".", ")", ":"};
// Set after a number in lists, and in no number.
constexpr std::string_view listStops[] = {"、", "．"};

struct LeadingNumber {
    int number = 0;
    std::string_view rest;
    bool surelyTrack = false; ///< by the way it is written; else the neighbours have to tell
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view takeDigits(std::string_view& text) {
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    const std::string_view digits(text.begin(), end);
    text.remove_prefix(digits.size());
    return digits;
}

bool takeBlanks(std::string_view& text) {
    const auto count = std::min(text.find_first_not_of(" _"), text.size());
    text.remove_prefix(count);
    return count > 0;
}

template <size_t Count>
bool takeOneOf(const std::string_view (&marks)[Count], std::string_view& text) {
    const auto mark = std::find_if(std::begin(marks), std::end(marks), [&](std::string_view each) {
        return text.substr(0, each.size()) == each;
    });
    if (mark == std::end(marks)) {
        return false;
    }
    text.remove_prefix(mark->size());
    return true;
}

// "1-02": the second track of the first disc.
void takeTrackOfDisc(std::string_view& digits, std::string_view& text) {
    if (digits.size() > 1 || text.empty() || (text.front() != '-' && text.front() != '.')) {
        return;
    }
    std::string_view rest = text.substr(1);
    const auto track = takeDigits(rest);
    if (track.size() == TrackOfDiscDigits) {
        digits = track;
        text = rest;
    }
}

std::optional<LeadingNumber> leadingNumber(std::string_view name) {
    const bool round = !name.empty() && name.front() == '(';
    const bool square = !name.empty() && name.front() == '[';
    std::string_view text = name.substr(round || square ? 1 : 0);
    auto digits = takeDigits(text);
    takeTrackOfDisc(digits, text);
    if (digits.empty() || digits.size() > MaxTrackDigits) {
        return std::nullopt;
    }
    bool sure = digits.size() > 1 && digits.front() == '0';
    if (round || square) {
        if (text.empty() || text.front() != (round ? ')' : ']')) {
            return std::nullopt;
        }
        text.remove_prefix(1);
        sure = true;
    }
    const bool blankBefore = takeBlanks(text);
    const bool dash = takeOneOf(dashes, text);
    const bool stop = !dash && takeOneOf(stops, text);
    const bool listStop = !dash && !stop && takeOneOf(listStops, text);
    const bool blankBehind = takeBlanks(text);
    if (text.empty() || !(round || square || blankBefore || dash || stop || listStop)) {
        return std::nullopt;
    }
    sure = sure || listStop || (blankBehind && (stop || (dash && blankBefore)));
    return LeadingNumber{std::stoi(std::string(digits)), text, sure};
}

std::string_view stemOf(std::string_view fileName) {
    return fileName.substr(0, fileName.rfind('.'));
}

// Whether all names begin with a different number, from 1 or 0 on: then these are their track numbers.
bool areNumbered(const std::vector<NamedFile>& files) {
    std::set<int> numbers;
    for (const auto& file : files) {
        const auto leading = leadingNumber(stemOf(file.fileName));
        if (!leading || !numbers.insert(leading->number).second) {
            return false;
        }
    }
    return numbers.size() > 1 && *numbers.begin() <= 1;
}

/** How much of a file's name is shown. */
enum class Shown { Short, WithEnding, FileName };

/** The names of one folder's files, each as short as the others allow. */
class Naming {
public:
    Naming(const std::vector<NamedFile>& files, model::MediaKind kind)
        : m_files(files), m_kind(kind), m_numbered(kind == model::MediaKind::Music && areNumbered(files)),
          m_shown(files.size(), Shown::Short) {
        for (size_t i = 0; i < files.size(); ++i) {
            m_names.push_back(nameOf(i));
        }
    }

    std::vector<std::string> take() {
        while (lengthenEqual()) {
        }
        return std::move(m_names);
    }

private:
    bool lengthenEqual() {
        std::map<std::string_view, int> uses;
        for (const auto& name : m_names) {
            ++uses[name];
        }
        std::vector<size_t> equal;
        for (size_t i = 0; i < m_names.size(); ++i) {
            if (uses[m_names[i]] > 1 && m_shown[i] != Shown::FileName) {
                equal.push_back(i);
            }
        }
        for (const size_t i : equal) {
            m_shown[i] = m_shown[i] == Shown::Short ? Shown::WithEnding : Shown::FileName;
            m_names[i] = nameOf(i);
        }
        return !equal.empty();
    }

    std::string nameOf(size_t i) const {
        const auto& file = m_files[i];
        const auto stem = stemOf(file.fileName);
        switch (m_shown[i]) {
        case Shown::Short:
            return shortName(file);
        case Shown::WithEnding:
            return shortName(file).append(std::string_view(file.fileName).substr(stem.size()));
        case Shown::FileName:
            break;
        }
        return file.fileName;
    }

    std::string shortName(const NamedFile& file) const {
        if (!file.title.empty()) {
            return file.title;
        }
        const auto stem = stemOf(file.fileName);
        const auto leading = m_kind == model::MediaKind::Music ? leadingNumber(stem) : std::nullopt;
        const bool isTrack = leading && (leading->surelyTrack || m_numbered ||
                                         (file.track > 0 && leading->number == file.track));
        return std::string(isTrack ? leading->rest : stem);
    }

    const std::vector<NamedFile>& m_files;
    model::MediaKind m_kind;
    bool m_numbered;
    std::vector<Shown> m_shown;
    std::vector<std::string> m_names;
};

} // namespace

std::vector<std::string> displayNames(const std::vector<NamedFile>& files, model::MediaKind kind) {
    return Naming(files, kind).take();
}

} // namespace zm::disc::library
