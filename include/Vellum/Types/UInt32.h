#ifndef VELLUM_TYPES_UINT32_H
#define VELLUM_TYPES_UINT32_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// An unsigned 32-bit integer (4 bytes, big-endian).
class VELLUM_CORE_EXPORT UInt32 final
    : public IntegerValue<UInt32, std::uint32_t, Identifiers::UInt32> {
public:
    using IntegerValue::IntegerValue;
    ~UInt32() override;
};

} // namespace Vellum::Types

#endif
