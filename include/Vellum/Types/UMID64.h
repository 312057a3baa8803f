#ifndef VELLUM_TYPES_UMID64_H
#define VELLUM_TYPES_UMID64_H

#include "Vellum/Types/IdentifierValue.h"

namespace Vellum::Types {

/// A 64-byte extended UMID: basic UMID and source pack (text: 191 characters).
class VELLUM_CORE_EXPORT UMID64 final : public IdentifierValue<UMID64, 64, Identifiers::UMID64> {
public:
    using IdentifierValue::IdentifierValue;
    ~UMID64() override;
};

} // namespace Vellum::Types

#endif
