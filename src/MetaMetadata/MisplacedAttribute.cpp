#include "Vellum/MetaMetadata/MisplacedAttribute.h"

#include "Vellum/MetaMetadata/AbstractMetaAttributeVisitor.h"

namespace Vellum::MetaMetadata {

MisplacedAttribute::MisplacedAttribute(const MetaElement& element) noexcept
    : m_element(&element) {}

MisplacedAttribute::~MisplacedAttribute() = default;

void MisplacedAttribute::accept(AbstractMetaAttributeVisitor& visitor) const {
    visitor.visit(*this);
}

} // namespace Vellum::MetaMetadata
