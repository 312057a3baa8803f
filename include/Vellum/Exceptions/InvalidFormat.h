#ifndef VELLUM_EXCEPTIONS_INVALIDFORMAT_H
#define VELLUM_EXCEPTIONS_INVALIDFORMAT_H

#include "Vellum/Exceptions/BaseException.h"

namespace Vellum::Exceptions {

/// Thrown for content that does not follow its format (bad bytes, bad text).
class VELLUM_CORE_EXPORT InvalidFormat : public BaseException {
public:
    using BaseException::BaseException;
    ~InvalidFormat() override;

    ExceptionKind kind() const noexcept override;
    const char* kindName() const noexcept override;
};

} // namespace Vellum::Exceptions

#endif
