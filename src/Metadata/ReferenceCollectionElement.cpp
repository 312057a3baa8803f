#include "Vellum/Metadata/ReferenceCollectionElement.h"

#include "Metadata/ReferenceFactory.h"

#include <utility>

namespace Vellum::Metadata {

ReferenceCollectionElement::ReferenceCollectionElement(MetadataSet& owner, AttributePtr attribute,
                                                       Types::Identifiers::Identifier kind,
                                                       Types::Identifiers::Identifier itemType)
    : CollectionElement(owner, std::move(attribute), kind, itemType) {}

ReferenceCollectionElement::~ReferenceCollectionElement() = default;

const Types::Reference& ReferenceCollectionElement::referenceAt(std::uint32_t index) const {
    // Items are of the element's item type, StrongReference or WeakReference.
    return static_cast<const Types::Reference&>(at(index));
}

void ReferenceCollectionElement::append(const MetadataSet* target) {
    CollectionElement::append(detail::referenceTo(target, itemType()));
}

void ReferenceCollectionElement::appendUnverified(Templates::auto_ptr<Types::Reference> reference) {
    CollectionElement::append(std::move(reference));
}

} // namespace Vellum::Metadata
