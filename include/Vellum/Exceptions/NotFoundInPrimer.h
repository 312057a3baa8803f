#ifndef VELLUM_EXCEPTIONS_NOTFOUNDINPRIMER_H
#define VELLUM_EXCEPTIONS_NOTFOUNDINPRIMER_H

#include "Vellum/Exceptions/BaseException.h"

namespace Vellum::Exceptions {

/// Thrown for a local tag that the partition's primer does not know.
class VELLUM_CORE_EXPORT NotFoundInPrimer : public BaseException {
public:
    using BaseException::BaseException;
    ~NotFoundInPrimer() override;

    ExceptionKind kind() const noexcept override;
    const char* kindName() const noexcept override;
};

} // namespace Vellum::Exceptions

#endif
