#include "Vellum/Types/StrongReference.h"

namespace Vellum::Types {

StrongReference::~StrongReference() = default;

StrongReference StrongReference::fromBytes(DataIO::Slice bytes) {
    requireSize(bytes, UUID::byteCount, Identifiers::StrongReference);
    return StrongReference(UUID::fromBytes(bytes));
}

} // namespace Vellum::Types
