#ifndef VELLUM_TYPES_STRINGREPRESENTATION_H
#define VELLUM_TYPES_STRINGREPRESENTATION_H

#include "Vellum/Core/Export.h"
#include "Vellum/Templates/Templates.h"

#include <cstddef>
#include <cstdint>

namespace Vellum::Types {

/// Text forms of identifiers (keys, labels, UUIDs, UMIDs, local tags).
enum StringRepresentationEncodingType : std::uint8_t {
    /// Two upper-case hexadecimal digits a byte, bytes joined by "." (47 characters for
    /// 16 bytes). Parsing accepts either case.
    DottedHex = 0,
};

namespace StringRepresentation {

/// Formats `count` bytes in the given encoding.
VELLUM_CORE_EXPORT WString format(const std::uint8_t* bytes, std::size_t count,
                                  StringRepresentationEncodingType encoding = DottedHex);

/// Parses exactly `count` bytes from `text` into `out`.
///
/// Strict: the text must have exactly the length of `count` bytes, a "." between every two
/// bytes and hexadecimal digits only; anything else throws InvalidFormat naming the text and
/// what is wrong. `what` names the kind of value in the message ("UUID", "key" ...).
VELLUM_CORE_EXPORT void parse(const WString& text, std::uint8_t* out, std::size_t count,
                              const char* what,
                              StringRepresentationEncodingType encoding = DottedHex);

} // namespace StringRepresentation
} // namespace Vellum::Types

#endif
