#include "Vellum/Types/StringRepresentation.h"

#include "Utils/HexText.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Utils/StringConversion.h"

#include <string>

namespace Vellum::Types::StringRepresentation {
namespace {

void checkEncoding(StringRepresentationEncodingType encoding) {
    if (encoding != DottedHex) {
        VELLUM_THROW(InvalidFormat, "unsupported identifier text encoding " +
                                        std::to_string(static_cast<unsigned>(encoding)));
    }
}

[[noreturn]] void reject(const WString& text, const char* what, const std::string& reason) {
    VELLUM_THROW(InvalidFormat,
                 "'" + Utils::wstringToString(text) + "' is not a valid " + what + ": " + reason);
}

} // namespace

WString format(const std::uint8_t* bytes, std::size_t count,
               StringRepresentationEncodingType encoding) {
    checkEncoding(encoding);
    WString out(count == 0 ? 0 : count * 3 - 1, u'.');
    Utils::writeDottedHex(bytes, count, out.data());
    return out;
}

void parse(const WString& text, std::uint8_t* out, std::size_t count, const char* what,
           StringRepresentationEncodingType encoding) {
    checkEncoding(encoding);
    const std::size_t expected = count == 0 ? 0 : count * 3 - 1;
    if (text.size() != expected) {
        reject(text, what,
               "expected " + std::to_string(expected) + " characters (" + std::to_string(count) +
                   " bytes as two hexadecimal digits joined by '.'), got " +
                   std::to_string(text.size()));
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = i * 3;
        if (i != 0 && text[at - 1] != u'.') {
            reject(text, what, "expected '.' at position " + std::to_string(at - 1));
        }
        const int high = Utils::hexDigitValue(text[at]);
        const int low = Utils::hexDigitValue(text[at + 1]);
        if (high < 0 || low < 0) {
            reject(text, what,
                   "non-hexadecimal digit at position " + std::to_string(high < 0 ? at : at + 1));
        }
        out[i] = static_cast<std::uint8_t>((high << 4) | low);
    }
}

} // namespace Vellum::Types::StringRepresentation
