#include "Vellum/Types/Batch.h"

#include "Vellum/Types/Visitors/NonConstVisitor.h"
#include "Vellum/Types/Visitors/Visitor.h"

#include <memory>

namespace Vellum::Types {

Batch::Batch(std::uint32_t itemSize, Identifiers::Identifier itemType)
    : Collection(itemSize, itemType) {}

Batch::~Batch() = default;

void Batch::accept(Visitors::NonConstVisitor& visitor) {
    visitor.visit(*this);
}

void Batch::accept(Visitors::Visitor& visitor) const {
    visitor.visit(*this);
}

Templates::auto_ptr<Collection> Batch::clone() const {
    auto copy = std::make_unique<Batch>(itemSize(), itemType());
    copy->appendClonesOf(*this);
    return copy;
}

Identifiers::Identifier Batch::identifier() const {
    return Identifiers::Batch;
}

} // namespace Vellum::Types
