#include "services/disc/image/TocTokens.h"

#include "services/disc/image/SheetText.h"

#include <algorithm>

namespace zm::disc::image {

namespace {

constexpr size_t OctalDigits = 3;

bool isOctal(std::string_view text) {
    return text.size() == OctalDigits &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '7'; });
}

class Lexer {
public:
    explicit Lexer(std::string_view text) : m_text(text) {}

    Result<std::vector<TocToken>> run() {
        while (!m_text.empty()) {
            if (auto status = step(); !status) {
                return status.failure();
            }
        }
        return std::move(m_tokens);
    }

private:
    Status step() {
        const char c = m_text.front();
        if (c == '\n') {
            ++m_line;
            m_text.remove_prefix(1);
        } else if (Blanks.find(c) != std::string_view::npos || c == ',') {
            m_text.remove_prefix(1);
        } else if (m_text.substr(0, 2) == "//") {
            m_text.remove_prefix(std::min(m_text.find('\n'), m_text.size()));
        } else if (c == '{' || c == '}') {
            add(c == '{' ? TocToken::Kind::Open : TocToken::Kind::Close, {c});
            m_text.remove_prefix(1);
        } else if (c == '"') {
            return quoted();
        } else {
            word();
        }
        return ok();
    }

    void word() {
        const auto end = std::min(m_text.find_first_of(" \t\r\f\v\n,{}\""), m_text.size());
        add(TocToken::Kind::Word, std::string(m_text.substr(0, end)));
        m_text.remove_prefix(end);
    }

    Status quoted() {
        std::string text;
        for (size_t at = 1; at < m_text.size() && m_text[at] != '\n'; ++at) {
            const char c = m_text[at];
            if (c == '"') {
                add(TocToken::Kind::Text, text);
                m_text.remove_prefix(at + 1);
                return ok();
            }
            if (c != '\\') {
                text += c;
            } else if (const auto code = m_text.substr(at + 1, OctalDigits); isOctal(code)) {
                text += static_cast<char>((code[0] - '0') * 64 + (code[1] - '0') * 8 + (code[2] - '0'));
                at += OctalDigits;
            } else if (at + 1 < m_text.size() && m_text[at + 1] != '\n') {
                text += m_text[++at];
            }
        }
        return lineError(m_line, m_text.substr(0, m_text.find('\n')), "the text has no end");
    }

    void add(TocToken::Kind kind, std::string text) { m_tokens.push_back({kind, std::move(text), m_line}); }

    std::string_view m_text;
    std::vector<TocToken> m_tokens;
    int m_line = 1;
};

} // namespace

Result<std::vector<TocToken>> tokensOfToc(std::string_view text) {
    return Lexer(text).run();
}

} // namespace zm::disc::image
