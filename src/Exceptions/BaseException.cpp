#include "Vellum/Exceptions/BaseException.h"

#include "Vellum/Utils/StringConversion.h"

#include <utility>

namespace Vellum::Exceptions {

BaseException::BaseException(const std::string& message, const char* sourceName, unsigned line)
    : m_message(Utils::stringToWstring(message))
    , m_sourceName(sourceName == nullptr ? "" : sourceName)
    , m_line(line) {}

BaseException::BaseException(WString message, const char* sourceName, unsigned line)
    : m_message(std::move(message))
    , m_sourceName(sourceName == nullptr ? "" : sourceName)
    , m_line(line) {}

BaseException::~BaseException() = default;

std::string BaseException::utf8Message() const {
    return Utils::wstringToString(m_message);
}

ExceptionKind BaseException::kind() const noexcept {
    return ExceptionKind::Base;
}

const char* BaseException::kindName() const noexcept {
    return "BaseException";
}

} // namespace Vellum::Exceptions
