#ifndef VELLUM_SRC_UTILS_HEXTEXT_H
#define VELLUM_SRC_UTILS_HEXTEXT_H

#include "Vellum/Templates/Templates.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

// Hexadecimal text of bytes: digits are read in either case and written in upper case, as a
// plain run ("0AFF00") or dotted, one byte between dots ("06.0E.2B"). Everything is inline:
// the export and the import use these per value, from more than one library.

namespace Vellum::Utils {

/// The value of a hexadecimal digit in either case; -1 for any other character.
constexpr int hexDigitValue(char16_t c) noexcept {
    if (c >= u'0' && c <= u'9') {
        return c - u'0';
    }
    if (c >= u'A' && c <= u'F') {
        return c - u'A' + 10;
    }
    if (c >= u'a' && c <= u'f') {
        return c - u'a' + 10;
    }
    return -1;
}

/// The upper-case digit of the low four bits of `value`.
constexpr char hexDigit(unsigned value) noexcept {
    return "0123456789ABCDEF"[value & 0x0FU];
}

/// Appends `byte` as two upper-case digits to a std::string or a WString.
template <class String>
void appendHexByte(String& out, std::uint8_t byte) {
    using Unit = typename String::value_type;
    out.push_back(static_cast<Unit>(hexDigit(byte >> 4U)));
    out.push_back(static_cast<Unit>(hexDigit(byte)));
}

/// `count` bytes as a plain run of digit pairs.
inline WString hexText(const std::uint8_t* bytes, std::size_t count) {
    WString out;
    out.reserve(count * 2);
    for (std::size_t i = 0; i < count; ++i) {
        appendHexByte(out, bytes[i]);
    }
    return out;
}

/// Writes `count` bytes in dotted form to `out`, which has room for 3 * count units; returns
/// the text written (3 * count - 1 units, none for no bytes).
inline std::u16string_view writeDottedHex(const std::uint8_t* bytes, std::size_t count,
                                          char16_t* out) noexcept {
    std::size_t at = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (i != 0) {
            out[at++] = u'.';
        }
        out[at++] = static_cast<char16_t>(hexDigit(bytes[i] >> 4U));
        out[at++] = static_cast<char16_t>(hexDigit(bytes[i]));
    }
    return std::u16string_view(out, at);
}

/// Reads `text` as exactly `count` bytes in dotted form into `out`. False, with `out` partly
/// written, for any other text (length, a separator other than '.', a non-digit).
inline bool readDottedHex(std::u16string_view text, std::uint8_t* out, std::size_t count) noexcept {
    if (text.size() != (count == 0 ? 0 : count * 3 - 1)) {
        return false;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = i * 3;
        if (i != 0 && text[at - 1] != u'.') {
            return false;
        }
        const int high = hexDigitValue(text[at]);
        const int low = hexDigitValue(text[at + 1]);
        if (high < 0 || low < 0) {
            return false;
        }
        out[i] = static_cast<std::uint8_t>((high << 4) | low);
    }
    return true;
}

} // namespace Vellum::Utils

#endif
