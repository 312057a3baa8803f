#ifndef VELLUM_APP_USAGEERROR_H
#define VELLUM_APP_USAGEERROR_H

#include <stdexcept>
#include <string>

namespace Vellum::App {

/// A command line the program cannot act on (unknown command or option, missing or extra
/// argument, bad option value). The program reports it with the synopsis of the command and
/// exits with status 2.
class UsageError : public std::runtime_error {
public:
    /// @param message what is wrong, e.g. "unknown option '--frob'".
    /// @param synopsis the one-line usage of the command concerned.
    UsageError(const std::string& message, std::string synopsis);

    /// The one-line usage to show next to the message.
    const std::string& synopsis() const noexcept { return m_synopsis; }

private:
    std::string m_synopsis;
};

} // namespace Vellum::App

#endif
