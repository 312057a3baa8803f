#ifndef VELLUM_TESTS_SUPPORT_PRINTCASE_H
#define VELLUM_TESTS_SUPPORT_PRINTCASE_H

#include <ostream>

/// Gives the case type `Type` of a table a PrintTo that writes `expression` (of the case `c`),
/// so that GoogleTest names a failing case instead of dumping its bytes. Use it in the
/// namespace of the type.
#define VELLUM_PRINT_CASE(Type, expression)                                                        \
    [[maybe_unused]] inline void PrintTo(const Type& c, std::ostream* out) {                       \
        *out << expression;                                                                        \
    }

/// The same for a case type with a `name` member.
#define VELLUM_PRINT_CASE_NAME(Type) VELLUM_PRINT_CASE(Type, c.name)

#endif
