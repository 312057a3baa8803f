#ifndef VELLUM_APP_ERRORPREFIX_H
#define VELLUM_APP_ERRORPREFIX_H

#include <string>

namespace Vellum::Exceptions {
class BaseException;
} // namespace Vellum::Exceptions

namespace Vellum::App {

/// Puts what was being read in front of a toolkit error, so that the program's one-line
/// error names it.
class ErrorPrefix {
public:
    /// Throws an exception of the same kind as `error` whose message is `prefix` followed by
    /// the message of `error`.
    [[noreturn]] static void rethrow(const Exceptions::BaseException& error,
                                     const std::string& prefix);
};

} // namespace Vellum::App

#endif
