#ifndef VELLUM_TYPES_UNKNOWN_H
#define VELLUM_TYPES_UNKNOWN_H

#include "Vellum/Types/BytesValue.h"

namespace Vellum::Types {

/// The bytes of a value whose type is not known, kept as they are so that they are written
/// back unchanged (type 24).
class VELLUM_CORE_EXPORT Unknown final : public BytesValue<Unknown, Identifiers::Unknown> {
public:
    using BytesValue::BytesValue;
    Unknown(const Unknown&) = default;
    Unknown(Unknown&&) noexcept = default;
    Unknown& operator=(const Unknown&) = default;
    Unknown& operator=(Unknown&&) noexcept = default;
    ~Unknown() override;
};

} // namespace Vellum::Types

#endif
