#ifndef VELLUM_EXCEPTIONS_IOERROR_H
#define VELLUM_EXCEPTIONS_IOERROR_H

#include "Vellum/Exceptions/BaseException.h"

namespace Vellum::Exceptions {

/// Thrown for a file that cannot be opened, read or written.
class VELLUM_CORE_EXPORT IOError : public BaseException {
public:
    using BaseException::BaseException;
    ~IOError() override;

    ExceptionKind kind() const noexcept override;
    const char* kindName() const noexcept override;
};

} // namespace Vellum::Exceptions

#endif
