#include "Vellum/XMLUtils/UnicodeString.h"

#include "Vellum/Utils/StringConversion.h"

#include <utility>

namespace Vellum::XMLUtils {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

bool isHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// UTF-16 to UTF-32; a lone surrogate becomes U+FFFD.
std::wstring toUtf32(const WString& text) {
    std::wstring out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        char32_t code = unit;
        if (isHighSurrogate(unit) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
            code = 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) +
                   (static_cast<char32_t>(text[i + 1]) - 0xDC00);
            ++i;
        } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
            code = replacementCharacter;
        }
        out.push_back(static_cast<wchar_t>(code));
    }
    return out;
}

} // namespace

UnicodeString::UnicodeString(const char* text)
    : m_text(Utils::stringToWstring(text)) {}

UnicodeString::UnicodeString(const XMLCh* text)
    : m_text(text == nullptr ? WString() : WString(text)) {}

UnicodeString::UnicodeString(WString text) noexcept
    : m_text(std::move(text)) {}

const wchar_t* UnicodeString::wchar() const {
    if (m_wide.empty() && !m_text.empty()) {
        if constexpr (sizeof(wchar_t) == sizeof(char16_t)) {
            m_wide.assign(m_text.begin(), m_text.end());
        } else {
            m_wide = toUtf32(m_text);
        }
    }
    return m_wide.c_str();
}

std::string UnicodeString::utf8() const {
    return Utils::wstringToString(m_text);
}

} // namespace Vellum::XMLUtils
