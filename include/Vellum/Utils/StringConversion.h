#ifndef VELLUM_UTILS_STRINGCONVERSION_H
#define VELLUM_UTILS_STRINGCONVERSION_H

#include "Vellum/Core/Export.h"
#include "Vellum/Templates/Templates.h"

#include <string>
#include <string_view>

/// @file
/// UTF-8 and UTF-16 conversions for names and messages.
///
/// Both directions are total: an ill-formed sequence (a stray continuation byte, a truncated
/// sequence, an overlong form, a lone surrogate) becomes U+FFFD, so text from a hostile file
/// can always be shown.

namespace Vellum::Utils {

/// UTF-8 (or plain ASCII) to UTF-16. A null pointer gives an empty string.
VELLUM_CORE_EXPORT WString stringToWstring(const char* text);

/// UTF-8 to UTF-16, for text that may hold NUL bytes.
VELLUM_CORE_EXPORT WString stringToWstring(std::string_view text);

/// UTF-16 to UTF-8.
VELLUM_CORE_EXPORT std::string wstringToString(const WString& text);

/// UTF-16 to UTF-8, for a view of code units.
VELLUM_CORE_EXPORT std::string wstringToString(std::u16string_view text);

} // namespace Vellum::Utils

#endif
