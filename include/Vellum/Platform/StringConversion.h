#ifndef VELLUM_PLATFORM_STRINGCONVERSION_H
#define VELLUM_PLATFORM_STRINGCONVERSION_H

#include "Vellum/Core/Export.h"

#include <string>

namespace Vellum::Platform {

/// A zero-terminated UTF-16 text (as Xerces-C hands them out) to UTF-8. A null pointer gives "".
VELLUM_CORE_EXPORT std::string wstringToString(const char16_t* text);

} // namespace Vellum::Platform

#endif
