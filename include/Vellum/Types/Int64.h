#ifndef VELLUM_TYPES_INT64_H
#define VELLUM_TYPES_INT64_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A signed 64-bit integer (8 bytes, big-endian).
class VELLUM_CORE_EXPORT Int64 final
    : public IntegerValue<Int64, std::int64_t, Identifiers::Int64> {
public:
    using IntegerValue::IntegerValue;
    ~Int64() override;
};

} // namespace Vellum::Types

#endif
