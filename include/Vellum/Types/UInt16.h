#ifndef VELLUM_TYPES_UINT16_H
#define VELLUM_TYPES_UINT16_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// An unsigned 16-bit integer (2 bytes, big-endian).
class VELLUM_CORE_EXPORT UInt16 final
    : public IntegerValue<UInt16, std::uint16_t, Identifiers::UInt16> {
public:
    using IntegerValue::IntegerValue;
    ~UInt16() override;
};

} // namespace Vellum::Types

#endif
