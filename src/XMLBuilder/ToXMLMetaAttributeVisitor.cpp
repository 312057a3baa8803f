#include "Vellum/XMLBuilder/ToXMLMetaAttributeVisitor.h"

#include "XMLBuilder/Vocabulary.h"

#include "Vellum/MetaMetadata/MetaAttribute.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MisplacedAttribute.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"

namespace Vellum::XMLBuilder {

ToXMLMetaAttributeVisitor::~ToXMLMetaAttributeVisitor() = default;

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::UnknownAttribute& attribute) {
    m_kind = Unknown;
    m_metaElement = nullptr;
    m_schemaIndex = nullptr;
    m_localTag = attribute.localTag().toString();
}

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::MisplacedAttribute& attribute) {
    m_kind = Misplaced;
    m_metaElement = &attribute.metaElement();
    m_schemaIndex = nullptr;
    m_localTag.clear();
}

void ToXMLMetaAttributeVisitor::visit(const MetaMetadata::MetaAttribute& attribute) {
    static const WString schemaIndexName(Vocabulary::schemaIndex);
    m_kind = Defined;
    m_metaElement = &attribute.metaElement();
    m_schemaIndex = m_metaElement->property(schemaIndexName);
    m_localTag.clear();
}

} // namespace Vellum::XMLBuilder
