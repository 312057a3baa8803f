#include "Vellum/Metadata/BatchElement.h"

#include "Vellum/Metadata/Visitors/ElementVisitor.h"
#include "Vellum/Metadata/Visitors/NonConstElementVisitor.h"

#include <utility>

namespace Vellum::Metadata {

BatchElement::BatchElement(MetadataSet& owner, AttributePtr attribute,
                           Types::Identifiers::Identifier itemType)
    : CollectionElement(owner, std::move(attribute), Types::Identifiers::Batch, itemType) {}

BatchElement::~BatchElement() = default;

void BatchElement::accept(Visitors::ElementVisitor& visitor) const {
    visitor.visit(*this);
}

void BatchElement::accept(Visitors::NonConstElementVisitor& visitor) {
    visitor.visit(*this);
}

void BatchElement::set(Templates::auto_ptr<Types::Batch> batch) {
    setCollection(std::move(batch));
}

} // namespace Vellum::Metadata
