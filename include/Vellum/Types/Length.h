#ifndef VELLUM_TYPES_LENGTH_H
#define VELLUM_TYPES_LENGTH_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A length in edit units or bytes: a signed 64-bit integer (8 bytes, big-endian).
class VELLUM_CORE_EXPORT Length final
    : public IntegerValue<Length, std::int64_t, Identifiers::Length> {
public:
    using IntegerValue::IntegerValue;
    ~Length() override;
};

} // namespace Vellum::Types

#endif
