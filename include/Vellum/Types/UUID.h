#ifndef VELLUM_TYPES_UUID_H
#define VELLUM_TYPES_UUID_H

#include "Vellum/Types/IdentifierValue.h"

namespace Vellum::Types {

/// A 16-byte UUID, stored in network byte order (text: 47 characters).
class VELLUM_CORE_EXPORT UUID final : public IdentifierValue<UUID, 16, Identifiers::UUID> {
public:
    using IdentifierValue::IdentifierValue;
    ~UUID() override;
};

} // namespace Vellum::Types

#endif
