#ifndef VELLUM_TYPES_UNIVERSALLABEL_H
#define VELLUM_TYPES_UNIVERSALLABEL_H

#include "Vellum/Types/IdentifierValue.h"

namespace Vellum::Types {

/// A 16-byte SMPTE universal label (text: 47 characters).
class VELLUM_CORE_EXPORT UniversalLabel final
    : public IdentifierValue<UniversalLabel, 16, Identifiers::UniversalLabel> {
public:
    using IdentifierValue::IdentifierValue;
    ~UniversalLabel() override;
};

} // namespace Vellum::Types

#endif
