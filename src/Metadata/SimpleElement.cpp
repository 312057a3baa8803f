#include "Vellum/Metadata/SimpleElement.h"

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Metadata/Visitors/ElementVisitor.h"
#include "Vellum/Metadata/Visitors/NonConstElementVisitor.h"
#include "Vellum/Types/Factories/ValueFactory.h"
#include "Vellum/Utils/StringConversion.h"

#include <utility>

namespace Vellum::Metadata {

SimpleElement::SimpleElement(MetadataSet& owner, AttributePtr attribute)
    : Element(owner, std::move(attribute)) {}

SimpleElement::~SimpleElement() = default;

void SimpleElement::accept(Visitors::ElementVisitor& visitor) const {
    visitor.visit(*this);
}

void SimpleElement::accept(Visitors::NonConstElementVisitor& visitor) {
    visitor.visit(*this);
}

void SimpleElement::set(Templates::auto_ptr<Types::SimpleDataType> value, bool checkType) {
    const auto* meta = metaElement();
    if (checkType && value && meta != nullptr && value->identifier() != meta->dataType()) {
        VELLUM_THROW(InvalidFormat,
                     "element " + Utils::wstringToString(meta->name()) + " takes a " +
                         Types::Identifiers::typeName(meta->dataType()) + " value, not a " +
                         Types::Identifiers::typeName(value->identifier()));
    }
    m_value = std::move(value);
    valueChanged();
}

void SimpleElement::clear() noexcept {
    m_value.reset();
}

std::uint64_t SimpleElement::valueSize() const {
    return m_value ? m_value->serializedSize() : 0;
}

void SimpleElement::serializeValue(DataIO::DataSink& sink) const {
    if (m_value) {
        m_value->serialize(sink);
    }
}

void SimpleElement::readValue(DataIO::Slice bytes) {
    const auto* meta = metaElement();
    auto type = meta != nullptr ? meta->dataType() : Types::Identifiers::Unknown;
    if (!Types::Factories::ValueFactory::hasValueClass(type)) {
        type = Types::Identifiers::Unknown;
    }
    m_value = Types::Factories::ValueFactory::create(type, bytes);
    valueChanged();
}

} // namespace Vellum::Metadata
