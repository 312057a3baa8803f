#include "Vellum/Types/Array.h"

#include "Vellum/Types/Visitors/NonConstVisitor.h"
#include "Vellum/Types/Visitors/Visitor.h"

#include <memory>

namespace Vellum::Types {

Array::Array(std::uint32_t itemSize, Identifiers::Identifier itemType)
    : Collection(itemSize, itemType) {}

Array::~Array() = default;

void Array::accept(Visitors::NonConstVisitor& visitor) {
    visitor.visit(*this);
}

void Array::accept(Visitors::Visitor& visitor) const {
    visitor.visit(*this);
}

Templates::auto_ptr<Collection> Array::clone() const {
    auto copy = std::make_unique<Array>(itemSize(), itemType());
    copy->appendClonesOf(*this);
    return copy;
}

Identifiers::Identifier Array::identifier() const {
    return Identifiers::Array;
}

} // namespace Vellum::Types
