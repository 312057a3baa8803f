#ifndef VELLUM_SRC_METADATA_REFERENCEFACTORY_H
#define VELLUM_SRC_METADATA_REFERENCEFACTORY_H

#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/Identifiers.h"
#include "Vellum/Types/Reference.h"

namespace Vellum::MetaMetadata {
class MetaElement;
} // namespace Vellum::MetaMetadata

namespace Vellum::Metadata {
class MetadataSet;
} // namespace Vellum::Metadata

namespace Vellum::Metadata::detail {

/// WeakReference for an element the dictionary defines as a weak reference, else
/// StrongReference.
Types::Identifiers::Identifier referenceTypeOf(const MetaMetadata::MetaElement* meta) noexcept;

/// A reference of `type` (StrongReference or WeakReference) to `target`'s instance identifier.
/// Throws InvalidFormat for a null target or one without an instance identifier.
Templates::auto_ptr<Types::Reference> referenceTo(const MetadataSet* target,
                                                  Types::Identifiers::Identifier type);

} // namespace Vellum::Metadata::detail

#endif
