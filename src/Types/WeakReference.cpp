#include "Vellum/Types/WeakReference.h"

namespace Vellum::Types {

WeakReference::~WeakReference() = default;

WeakReference WeakReference::fromBytes(DataIO::Slice bytes) {
    requireSize(bytes, UUID::byteCount, Identifiers::WeakReference);
    return WeakReference(UUID::fromBytes(bytes));
}

} // namespace Vellum::Types
