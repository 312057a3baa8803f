#ifndef VELLUM_TYPES_INT8_H
#define VELLUM_TYPES_INT8_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A signed 8-bit integer (1 byte).
class VELLUM_CORE_EXPORT Int8 final : public IntegerValue<Int8, std::int8_t, Identifiers::Int8> {
public:
    using IntegerValue::IntegerValue;
    ~Int8() override;
};

} // namespace Vellum::Types

#endif
