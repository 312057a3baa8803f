#include "Vellum/Metadata/ReferenceElement.h"

#include "Metadata/ReferenceFactory.h"

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/Visitors/ElementVisitor.h"
#include "Vellum/Metadata/Visitors/NonConstElementVisitor.h"
#include "Vellum/Types/StrongReference.h"
#include "Vellum/Types/WeakReference.h"

#include <utility>

namespace Vellum::Metadata {

ReferenceElement::ReferenceElement(MetadataSet& owner, AttributePtr attribute)
    : Element(owner, std::move(attribute)) {}

ReferenceElement::~ReferenceElement() = default;

void ReferenceElement::accept(Visitors::ElementVisitor& visitor) const {
    visitor.visit(*this);
}

void ReferenceElement::accept(Visitors::NonConstElementVisitor& visitor) {
    visitor.visit(*this);
}

void ReferenceElement::set(const MetadataSet* target) {
    m_value = detail::referenceTo(target, detail::referenceTypeOf(metaElement()));
    valueChanged();
}

void ReferenceElement::setUnverifiedReference(Templates::auto_ptr<Types::Reference> reference) {
    m_value = std::move(reference);
    valueChanged();
}

void ReferenceElement::clear() noexcept {
    m_value.reset();
}

std::uint64_t ReferenceElement::valueSize() const {
    return m_value ? m_value->serializedSize() : 0;
}

void ReferenceElement::serializeValue(DataIO::DataSink& sink) const {
    if (m_value) {
        m_value->serialize(sink);
    }
}

void ReferenceElement::readValue(DataIO::Slice bytes) {
    if (detail::referenceTypeOf(metaElement()) == Types::Identifiers::WeakReference) {
        m_value = std::make_unique<Types::WeakReference>(Types::WeakReference::fromBytes(bytes));
    } else {
        m_value =
            std::make_unique<Types::StrongReference>(Types::StrongReference::fromBytes(bytes));
    }
    valueChanged();
}

} // namespace Vellum::Metadata
