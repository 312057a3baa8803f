#include "Vellum/Metadata/Element.h"

#include "Metadata/MetaElementOf.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/Visitors/ElementVisitor.h"
#include "Vellum/Metadata/Visitors/NonConstElementVisitor.h"

#include <utility>

namespace Vellum::Metadata {

Element::Element(MetadataSet& owner, AttributePtr attribute)
    : m_owner(&owner)
    , m_attribute(std::move(attribute))
    , m_metaElement(nullptr) {
    if (!m_attribute) {
        VELLUM_THROW(InvalidFormat, "an element needs a meta-attribute");
    }
    m_metaElement = detail::metaElementOf(*m_attribute);
}

Element::~Element() = default;

void Element::valueChanged() {
    m_owner->elementChanged(*this);
}

namespace Visitors {
ElementVisitor::~ElementVisitor() = default;
NonConstElementVisitor::~NonConstElementVisitor() = default;
} // namespace Visitors

} // namespace Vellum::Metadata
