#pragma once

#include <string>
#include <vector>

namespace zm::test {

/** Arguments as a program gets them. */
class Arguments {
public:
    explicit Arguments(const std::vector<const char*>& words) : m_words(words.begin(), words.end()) {
        for (std::string& word : m_words) {
            m_pointers.push_back(word.data());
        }
        m_pointers.push_back(nullptr);
    }
    int count() const { return static_cast<int>(m_words.size()); }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;
    char** values() { return m_pointers.data(); }

private:
    std::vector<std::string> m_words;
    std::vector<char*> m_pointers;
};

} // namespace zm::test
