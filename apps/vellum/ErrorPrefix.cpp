#include "ErrorPrefix.h"

#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/NotFoundInPrimer.h"
#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Exceptions/Throw.h"

namespace Vellum::App {

void ErrorPrefix::rethrow(const Exceptions::BaseException& error, const std::string& prefix) {
    const std::string text = prefix + error.utf8Message();
    switch (error.kind()) {
    case Exceptions::ExceptionKind::InvalidLength:
        VELLUM_THROW(InvalidLength, text);
    case Exceptions::ExceptionKind::IOError:
        VELLUM_THROW(IOError, text);
    case Exceptions::ExceptionKind::NotFoundInPrimer:
        VELLUM_THROW(NotFoundInPrimer, text);
    case Exceptions::ExceptionKind::ParseError:
        VELLUM_THROW(ParseError, text);
    default:
        VELLUM_THROW(InvalidFormat, text);
    }
}

} // namespace Vellum::App
