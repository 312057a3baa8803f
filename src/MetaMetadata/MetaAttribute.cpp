#include "Vellum/MetaMetadata/MetaAttribute.h"

#include "Vellum/MetaMetadata/AbstractMetaAttributeVisitor.h"

namespace Vellum::MetaMetadata {

MetaAttribute::MetaAttribute(const MetaElement& element,
                             AttributeRequiredStatus::Status status) noexcept
    : m_element(&element)
    , m_status(status) {}

MetaAttribute::~MetaAttribute() = default;

void MetaAttribute::accept(AbstractMetaAttributeVisitor& visitor) const {
    visitor.visit(*this);
}

} // namespace Vellum::MetaMetadata
