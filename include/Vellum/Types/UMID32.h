#ifndef VELLUM_TYPES_UMID32_H
#define VELLUM_TYPES_UMID32_H

#include "Vellum/Types/IdentifierValue.h"

namespace Vellum::Types {

/// A 32-byte basic UMID (text: 95 characters).
class VELLUM_CORE_EXPORT UMID32 final : public IdentifierValue<UMID32, 32, Identifiers::UMID32> {
public:
    using IdentifierValue::IdentifierValue;
    ~UMID32() override;
};

} // namespace Vellum::Types

#endif
