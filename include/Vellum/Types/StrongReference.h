#ifndef VELLUM_TYPES_STRONGREFERENCE_H
#define VELLUM_TYPES_STRONGREFERENCE_H

#include "Vellum/Types/Reference.h"
#include "Vellum/Types/TypedValue.h"

namespace Vellum::Types {

/// A strong reference: the referring set owns the target set, whose instance UUID this holds.
class VELLUM_CORE_EXPORT StrongReference final
    : public TypedValue<StrongReference, Identifiers::StrongReference, Reference> {
public:
    using TypedValue::TypedValue;
    StrongReference(const StrongReference&) = default;
    StrongReference(StrongReference&&) = default;
    StrongReference& operator=(const StrongReference&) = default;
    StrongReference& operator=(StrongReference&&) = default;
    ~StrongReference() override;

    /// Reads the stored form (the target's UUID); throws InvalidLength unless `bytes` is 16
    /// bytes.
    static StrongReference fromBytes(DataIO::Slice bytes);
};

} // namespace Vellum::Types

#endif
