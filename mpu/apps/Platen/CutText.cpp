#include "CutText.h"

#include <cstring>

void CopyText(char* buffer, std::size_t size, const std::string& text) {
    constexpr unsigned CONTINUATION_MASK = 0xC0;
    constexpr unsigned CONTINUATION = 0x80;
    std::size_t length = text.size();
    if (length >= size) {
        length = size - 1;
        while (length > 0 && (static_cast<unsigned char>(text[length]) & CONTINUATION_MASK) == CONTINUATION) {
            --length;
        }
    }
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
}
