#ifndef VELLUM_METAMETADATA_ATTRIBUTEREQUIREDSTATUS_H
#define VELLUM_METAMETADATA_ATTRIBUTEREQUIREDSTATUS_H

#include "Vellum/Core/Export.h"

#include <cstdint>

namespace Vellum::MetaMetadata::AttributeRequiredStatus {

/// How strictly a set must carry one of its elements.
enum Status : std::uint8_t {
    Required = 0,        ///< every writer writes it
    Optional = 1,        ///< may be left out
    BestEffort = 2,      ///< written when the writer knows the value
    DecoderRequired = 3, ///< a decoder needs it to decode the essence
    EncoderRequired = 4, ///< an encoder must write it
};

/// The status's name as the dictionary file spells it ("required", "best-effort" ...), or
/// nullptr for a number out of range. Never throws.
VELLUM_CORE_EXPORT const char* name(Status status) noexcept;

} // namespace Vellum::MetaMetadata::AttributeRequiredStatus

#endif
