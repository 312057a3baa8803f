#include "Vellum/Metadata/ArrayElement.h"

#include "Vellum/Metadata/Visitors/ElementVisitor.h"
#include "Vellum/Metadata/Visitors/NonConstElementVisitor.h"

#include <utility>

namespace Vellum::Metadata {

ArrayElement::ArrayElement(MetadataSet& owner, AttributePtr attribute,
                           Types::Identifiers::Identifier itemType)
    : CollectionElement(owner, std::move(attribute), Types::Identifiers::Array, itemType) {}

ArrayElement::~ArrayElement() = default;

void ArrayElement::accept(Visitors::ElementVisitor& visitor) const {
    visitor.visit(*this);
}

void ArrayElement::accept(Visitors::NonConstElementVisitor& visitor) {
    visitor.visit(*this);
}

void ArrayElement::set(Templates::auto_ptr<Types::Array> array) {
    setCollection(std::move(array));
}

} // namespace Vellum::Metadata
