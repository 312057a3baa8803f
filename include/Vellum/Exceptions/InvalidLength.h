#ifndef VELLUM_EXCEPTIONS_INVALIDLENGTH_H
#define VELLUM_EXCEPTIONS_INVALIDLENGTH_H

#include "Vellum/Exceptions/BaseException.h"

namespace Vellum::Exceptions {

/// Thrown for sizes that disagree, or data that ends before its declared length.
class VELLUM_CORE_EXPORT InvalidLength : public BaseException {
public:
    using BaseException::BaseException;
    ~InvalidLength() override;

    ExceptionKind kind() const noexcept override;
    const char* kindName() const noexcept override;
};

} // namespace Vellum::Exceptions

#endif
