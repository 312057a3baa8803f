#ifndef VELLUM_TYPES_INT32_H
#define VELLUM_TYPES_INT32_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A signed 32-bit integer (4 bytes, big-endian).
class VELLUM_CORE_EXPORT Int32 final
    : public IntegerValue<Int32, std::int32_t, Identifiers::Int32> {
public:
    using IntegerValue::IntegerValue;
    ~Int32() override;
};

} // namespace Vellum::Types

#endif
