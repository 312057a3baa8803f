#ifndef VELLUM_TYPES_UINT8_H
#define VELLUM_TYPES_UINT8_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// An unsigned 8-bit integer (1 byte).
class VELLUM_CORE_EXPORT UInt8 final
    : public IntegerValue<UInt8, std::uint8_t, Identifiers::UInt8> {
public:
    using IntegerValue::IntegerValue;
    ~UInt8() override;
};

} // namespace Vellum::Types

#endif
