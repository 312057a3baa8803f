#ifndef VELLUM_EXCEPTIONS_BASEEXCEPTION_H
#define VELLUM_EXCEPTIONS_BASEEXCEPTION_H

#include "Vellum/Core/Export.h"
#include "Vellum/Exceptions/ExceptionKind.h"
#include "Vellum/Templates/Templates.h"

#include <string>

namespace Vellum::Exceptions {

/// Root of every exception the toolkit throws.
///
/// Carries a UTF-16 message and the source location that raised it. Callers that need to
/// tell failures apart catch a derived class or look at `kind()`.
class VELLUM_CORE_EXPORT BaseException {
public:
    /// @param message UTF-8 text of the message.
    /// @param sourceName the source file that throws (usually `__FILE__`).
    BaseException(const std::string& message, const char* sourceName, unsigned line);
    BaseException(WString message, const char* sourceName, unsigned line);
    BaseException(const BaseException&) = default;
    BaseException(BaseException&&) noexcept = default;
    BaseException& operator=(const BaseException&) = default;
    BaseException& operator=(BaseException&&) noexcept = default;
    virtual ~BaseException();

    /// The message, as given to the constructor.
    const WString& message() const noexcept { return m_message; }
    /// The same text as `message()`; kept for callers used to `std::exception`.
    const WString& what() const noexcept { return m_message; }
    /// The message as UTF-8, for printing.
    std::string utf8Message() const;
    /// The source file that raised the exception.
    const std::string& sourceName() const noexcept { return m_sourceName; }
    unsigned line() const noexcept { return m_line; }

    /// The kind number (see `ExceptionKind`).
    virtual ExceptionKind kind() const noexcept;
    /// The kind's class name, e.g. "InvalidFormat".
    virtual const char* kindName() const noexcept;

private:
    WString m_message;
    std::string m_sourceName;
    unsigned m_line;
};

} // namespace Vellum::Exceptions

#endif
