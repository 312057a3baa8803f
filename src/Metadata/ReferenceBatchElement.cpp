#include "Vellum/Metadata/ReferenceBatchElement.h"

#include "Vellum/Metadata/Visitors/ElementVisitor.h"
#include "Vellum/Metadata/Visitors/NonConstElementVisitor.h"

#include <utility>

namespace Vellum::Metadata {

ReferenceBatchElement::ReferenceBatchElement(MetadataSet& owner, AttributePtr attribute,
                                             Types::Identifiers::Identifier itemType)
    : ReferenceCollectionElement(owner, std::move(attribute), Types::Identifiers::Batch, itemType) {
}

ReferenceBatchElement::~ReferenceBatchElement() = default;

void ReferenceBatchElement::accept(Visitors::ElementVisitor& visitor) const {
    visitor.visit(*this);
}

void ReferenceBatchElement::accept(Visitors::NonConstElementVisitor& visitor) {
    visitor.visit(*this);
}

} // namespace Vellum::Metadata
