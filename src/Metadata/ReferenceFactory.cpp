#include "Metadata/ReferenceFactory.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Types/StrongReference.h"
#include "Vellum/Types/WeakReference.h"

namespace Vellum::Metadata::detail {

Types::Identifiers::Identifier referenceTypeOf(const MetaMetadata::MetaElement* meta) noexcept {
    const bool weak =
        meta != nullptr && meta->referenceKind() == MetaMetadata::MetaElement::ReferenceKind::Weak;
    return weak ? Types::Identifiers::WeakReference : Types::Identifiers::StrongReference;
}

Templates::auto_ptr<Types::Reference> referenceTo(const MetadataSet* target,
                                                  Types::Identifiers::Identifier type) {
    if (target == nullptr) {
        VELLUM_THROW(InvalidFormat, "a reference needs a target set");
    }
    const Types::UUID* uid = target->instanceUID();
    if (uid == nullptr) {
        VELLUM_THROW(InvalidFormat, "the target set " + target->key().toUtf8() +
                                        " has no instance identifier to refer to");
    }
    if (type == Types::Identifiers::WeakReference) {
        return std::make_unique<Types::WeakReference>(*uid);
    }
    return std::make_unique<Types::StrongReference>(*uid);
}

} // namespace Vellum::Metadata::detail
