#include "Vellum/XMLBuilder/FromXMLMetaAttributeVisitor.h"

#include "XMLBuilder/Vocabulary.h"

#include "Vellum/MetaMetadata/MetaAttribute.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MisplacedAttribute.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"

namespace Vellum::XMLBuilder {

FromXMLMetaAttributeVisitor::~FromXMLMetaAttributeVisitor() = default;

void FromXMLMetaAttributeVisitor::visit(const MetaMetadata::UnknownAttribute& /*attribute*/) {
    m_metaElement = nullptr;
    m_schemaIndex = nullptr;
}

void FromXMLMetaAttributeVisitor::visit(const MetaMetadata::MisplacedAttribute& attribute) {
    m_metaElement = &attribute.metaElement();
    m_schemaIndex = nullptr;
}

void FromXMLMetaAttributeVisitor::visit(const MetaMetadata::MetaAttribute& attribute) {
    static const WString schemaIndexName(Vocabulary::schemaIndex);
    m_metaElement = &attribute.metaElement();
    m_schemaIndex = m_metaElement->property(schemaIndexName);
}

} // namespace Vellum::XMLBuilder
