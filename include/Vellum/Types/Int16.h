#ifndef VELLUM_TYPES_INT16_H
#define VELLUM_TYPES_INT16_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A signed 16-bit integer (2 bytes, big-endian).
class VELLUM_CORE_EXPORT Int16 final
    : public IntegerValue<Int16, std::int16_t, Identifiers::Int16> {
public:
    using IntegerValue::IntegerValue;
    ~Int16() override;
};

} // namespace Vellum::Types

#endif
