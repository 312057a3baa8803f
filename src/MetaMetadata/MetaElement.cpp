#include "Vellum/MetaMetadata/MetaElement.h"

#include "Vellum/MetaMetadata/MetaAttribute.h"
#include "Vellum/Utils/StringConversion.h"

#include <string>

namespace Vellum::MetaMetadata {

MetaElement::MetaElement(Definition definition, const MetaMetadataSet& definingSet)
    : m_definition(std::move(definition))
    , m_schemaIndexText(Utils::stringToWstring(std::to_string(m_definition.schemaIndex)))
    , m_definingSet(&definingSet)
    , m_attribute(std::make_shared<const MetaAttribute>(*this, m_definition.requiredStatus)) {
    if (m_definition.staticLocalTag) {
        m_localTag.emplace(*m_definition.staticLocalTag);
    }
}

MetaElement::~MetaElement() = default;

Types::Identifiers::Identifier MetaElement::dataType() const noexcept {
    return m_definition.valueType;
}

bool MetaElement::isCollection() const noexcept {
    return false;
}

const WString* MetaElement::property(const WString& propertyName) const noexcept {
    if (propertyName == u"XMLTagName") {
        return &m_definition.xmlTagName;
    }
    if (propertyName == u"XMLDefaultPrefix") {
        return &m_definition.xmlPrefix;
    }
    if (propertyName == u"XMLNamespaceURI") {
        return &m_definition.xmlNamespace;
    }
    if (propertyName == u"SchemaIndex") {
        return &m_schemaIndexText;
    }
    return nullptr;
}

} // namespace Vellum::MetaMetadata
