#include "Vellum/Metadata/ReferenceArrayElement.h"

#include "Vellum/Metadata/Visitors/ElementVisitor.h"
#include "Vellum/Metadata/Visitors/NonConstElementVisitor.h"

#include <utility>

namespace Vellum::Metadata {

ReferenceArrayElement::ReferenceArrayElement(MetadataSet& owner, AttributePtr attribute,
                                             Types::Identifiers::Identifier itemType)
    : ReferenceCollectionElement(owner, std::move(attribute), Types::Identifiers::Array, itemType) {
}

ReferenceArrayElement::~ReferenceArrayElement() = default;

void ReferenceArrayElement::accept(Visitors::ElementVisitor& visitor) const {
    visitor.visit(*this);
}

void ReferenceArrayElement::accept(Visitors::NonConstElementVisitor& visitor) {
    visitor.visit(*this);
}

} // namespace Vellum::Metadata
