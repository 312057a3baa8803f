#include "Vellum/Utils/StringConversion.h"

#include <cstdint>

namespace Vellum::Utils {
namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0U) == 0x80U;
}

// Decodes one code point starting at text[pos] and advances pos past it.
char32_t decodeUtf8(std::string_view text, std::size_t& pos) {
    const auto lead = static_cast<unsigned char>(text[pos++]);
    if (lead < 0x80U) {
        return lead;
    }
    std::size_t extra = 0;
    char32_t codePoint = 0;
    char32_t minimum = 0;
    if ((lead & 0xE0U) == 0xC0U) {
        extra = 1;
        codePoint = lead & 0x1FU;
        minimum = 0x80;
    } else if ((lead & 0xF0U) == 0xE0U) {
        extra = 2;
        codePoint = lead & 0x0FU;
        minimum = 0x800;
    } else if ((lead & 0xF8U) == 0xF0U) {
        extra = 3;
        codePoint = lead & 0x07U;
        minimum = 0x10000;
    } else {
        return replacementCharacter;
    }
    for (std::size_t i = 0; i < extra; ++i) {
        if (pos >= text.size() || !isContinuation(static_cast<unsigned char>(text[pos]))) {
            return replacementCharacter;
        }
        codePoint = (codePoint << 6U) | (static_cast<unsigned char>(text[pos++]) & 0x3FU);
    }
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (codePoint < minimum || codePoint > 0x10FFFF || surrogate) {
        return replacementCharacter;
    }
    return codePoint;
}

void appendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0U | (cp >> 6U)));
        out.push_back(static_cast<char>(0x80U | (cp & 0x3FU)));
    } else if (cp < 0x10000) {
        out.push_back(static_cast<char>(0xE0U | (cp >> 12U)));
        out.push_back(static_cast<char>(0x80U | ((cp >> 6U) & 0x3FU)));
        out.push_back(static_cast<char>(0x80U | (cp & 0x3FU)));
    } else {
        out.push_back(static_cast<char>(0xF0U | (cp >> 18U)));
        out.push_back(static_cast<char>(0x80U | ((cp >> 12U) & 0x3FU)));
        out.push_back(static_cast<char>(0x80U | ((cp >> 6U) & 0x3FU)));
        out.push_back(static_cast<char>(0x80U | (cp & 0x3FU)));
    }
}

} // namespace

WString stringToWstring(const char* text) {
    return text == nullptr ? WString() : stringToWstring(std::string_view(text));
}

WString stringToWstring(std::string_view text) {
    WString out;
    out.reserve(text.size());
    std::size_t pos = 0;
    while (pos < text.size()) {
        const char32_t cp = decodeUtf8(text, pos);
        if (cp < 0x10000) {
            out.push_back(static_cast<char16_t>(cp));
        } else {
            const char32_t v = cp - 0x10000;
            out.push_back(static_cast<char16_t>(0xD800U + (v >> 10U)));
            out.push_back(static_cast<char16_t>(0xDC00U + (v & 0x3FFU)));
        }
    }
    return out;
}

std::string wstringToString(const WString& text) {
    return wstringToString(std::u16string_view(text));
}

std::string wstringToString(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF) {
            const char32_t low = text[++i];
            appendUtf8(out, 0x10000 + ((unit - 0xD800) << 10U) + (low - 0xDC00));
        } else if (unit >= 0xD800 && unit <= 0xDFFF) {
            appendUtf8(out, replacementCharacter);
        } else {
            appendUtf8(out, unit);
        }
    }
    return out;
}

} // namespace Vellum::Utils
