#ifndef VELLUM_EXCEPTIONS_EXCEPTIONKIND_H
#define VELLUM_EXCEPTIONS_EXCEPTIONKIND_H

#include <cstdint>

namespace Vellum::Exceptions {

/// The toolkit's numbering of exception kinds, as reported by `BaseException::kind()`.
enum class ExceptionKind : std::uint32_t {
    Base = 0,             ///< a BaseException that is no more specific
    InvalidFormat = 1,    ///< content that does not follow its format
    InvalidLength = 2,    ///< sizes that disagree, or data that ends too early
    NotFoundInPrimer = 3, ///< a local tag the partition's primer does not know
    IOError = 4,          ///< a file that cannot be opened, read or written
    ParseError = 33,      ///< an XML-level fault
};

} // namespace Vellum::Exceptions

#endif
