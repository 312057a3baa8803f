#ifndef VELLUM_EXCEPTIONS_THROW_H
#define VELLUM_EXCEPTIONS_THROW_H

#include "Vellum/Exceptions/InvalidFormat.h"

#include <string>

/// @file
/// Throw helpers that stamp the source location on every toolkit exception.

/// Throws `Vellum::Exceptions::Kind` with the given message (UTF-8 std::string or WString).
#define VELLUM_THROW(Kind, message) throw ::Vellum::Exceptions::Kind((message), __FILE__, __LINE__)

/// Assertion-style check: throws InvalidFormat "condition: explanation" when it fails.
#define VELLUM_CHECK(condition, explanation)                                                       \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            throw ::Vellum::Exceptions::InvalidFormat(                                             \
                std::string(#condition ": ") + (explanation), __FILE__, __LINE__);                 \
        }                                                                                          \
    } while (false)

#endif
