#include "Vellum/MetaMetadata/MetaElement.h"

#include "Vellum/MetaMetadata/MetaAttribute.h"
#include "Vellum/Utils/StringConversion.h"

#include <string>
#include <string_view>

namespace Vellum::MetaMetadata {

using namespace std::string_view_literals;

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
    // Views compare lengths first: the export asks for these names once per element.
    const std::u16string_view name(propertyName);
    if (name == u"XMLTagName"sv) {
        return &m_definition.xmlTagName;
    }
    if (name == u"XMLDefaultPrefix"sv) {
        return &m_definition.xmlPrefix;
    }
    if (name == u"XMLNamespaceURI"sv) {
        return &m_definition.xmlNamespace;
    }
    if (name == u"SchemaIndex"sv) {
        return &m_schemaIndexText;
    }
    return nullptr;
}

} // namespace Vellum::MetaMetadata
