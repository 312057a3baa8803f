#ifndef VELLUM_XMLUTILS_ENCODINGTYPE_H
#define VELLUM_XMLUTILS_ENCODINGTYPE_H

#include <cstdint>

namespace Vellum::XMLUtils {

/// The character encoding of serialised XML.
enum class EncodingType : std::uint8_t {
    UTF8 = 0,  ///< UTF-8, no byte order mark
    UTF16 = 1, ///< UTF-16, little-endian, with a byte order mark
};

} // namespace Vellum::XMLUtils

#endif
