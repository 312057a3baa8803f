#ifndef VELLUM_TYPES_POSITION_H
#define VELLUM_TYPES_POSITION_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// A position in edit units: a signed 64-bit integer (8 bytes, big-endian).
class VELLUM_CORE_EXPORT Position final
    : public IntegerValue<Position, std::int64_t, Identifiers::Position> {
public:
    using IntegerValue::IntegerValue;
    ~Position() override;
};

} // namespace Vellum::Types

#endif
