#ifndef VELLUM_EXCEPTIONS_PARSEERROR_H
#define VELLUM_EXCEPTIONS_PARSEERROR_H

#include "Vellum/Exceptions/BaseException.h"

namespace Vellum::Exceptions {

/// Thrown for an XML-level fault (malformed document, DOM or XPath failure).
class VELLUM_CORE_EXPORT ParseError : public BaseException {
public:
    using BaseException::BaseException;
    ~ParseError() override;

    ExceptionKind kind() const noexcept override;
    const char* kindName() const noexcept override;
};

} // namespace Vellum::Exceptions

#endif
