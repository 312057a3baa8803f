#include "Vellum/Platform/StringConversion.h"

#include "Vellum/Utils/StringConversion.h"

#include <string_view>

namespace Vellum::Platform {

std::string wstringToString(const char16_t* text) {
    return text == nullptr ? std::string() : Utils::wstringToString(std::u16string_view(text));
}

} // namespace Vellum::Platform
