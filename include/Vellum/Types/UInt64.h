#ifndef VELLUM_TYPES_UINT64_H
#define VELLUM_TYPES_UINT64_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// An unsigned 64-bit integer (8 bytes, big-endian).
class VELLUM_CORE_EXPORT UInt64 final
    : public IntegerValue<UInt64, std::uint64_t, Identifiers::UInt64> {
public:
    using IntegerValue::IntegerValue;
    ~UInt64() override;
};

} // namespace Vellum::Types

#endif
