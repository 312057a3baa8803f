#ifndef VELLUM_TYPES_UTF16_H
#define VELLUM_TYPES_UTF16_H

#include "Vellum/Types/IntegerValue.h"

#include <cstdint>

namespace Vellum::Types {

/// One UTF-16 code unit (2 bytes, big-endian), kept as stored (a lone surrogate too).
class VELLUM_CORE_EXPORT UTF16 final : public IntegerValue<UTF16, char16_t, Identifiers::UTF16> {
public:
    using IntegerValue::IntegerValue;
    ~UTF16() override;
};

} // namespace Vellum::Types

#endif
