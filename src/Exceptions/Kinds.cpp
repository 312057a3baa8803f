// The derived exception kinds differ only in their kind number and name.
#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/NotFoundInPrimer.h"
#include "Vellum/Exceptions/ParseError.h"

#define VELLUM_DEFINE_EXCEPTION_KIND(Name)                                                         \
    Name::~Name() = default;                                                                       \
    ExceptionKind Name::kind() const noexcept {                                                    \
        return ExceptionKind::Name;                                                                \
    }                                                                                              \
    const char* Name::kindName() const noexcept {                                                  \
        return #Name;                                                                              \
    }

namespace Vellum::Exceptions {

VELLUM_DEFINE_EXCEPTION_KIND(InvalidFormat)
VELLUM_DEFINE_EXCEPTION_KIND(InvalidLength)
VELLUM_DEFINE_EXCEPTION_KIND(NotFoundInPrimer)
VELLUM_DEFINE_EXCEPTION_KIND(IOError)
VELLUM_DEFINE_EXCEPTION_KIND(ParseError)

} // namespace Vellum::Exceptions
