#ifndef VELLUM_TYPES_WEAKREFERENCE_H
#define VELLUM_TYPES_WEAKREFERENCE_H

#include "Vellum/Types/Reference.h"
#include "Vellum/Types/TypedValue.h"

namespace Vellum::Types {

/// A weak reference: names a set (by its instance UUID) that the referring set does not own.
class VELLUM_CORE_EXPORT WeakReference final
    : public TypedValue<WeakReference, Identifiers::WeakReference, Reference> {
public:
    using TypedValue::TypedValue;
    WeakReference(const WeakReference&) = default;
    WeakReference(WeakReference&&) = default;
    WeakReference& operator=(const WeakReference&) = default;
    WeakReference& operator=(WeakReference&&) = default;
    ~WeakReference() override;

    /// Reads the stored form (the target's UUID); throws InvalidLength unless `bytes` is 16
    /// bytes.
    static WeakReference fromBytes(DataIO::Slice bytes);
};

} // namespace Vellum::Types

#endif
