#include "Vellum/XMLBuilder/ToXMLReferenceVisitor.h"

#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Types/StrongReference.h"
#include "Vellum/Types/WeakReference.h"
#include "Vellum/XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "Vellum/XMLBuilder/ToXMLMetadataSetVisitor.h"
#include "Vellum/XMLBuilder/Vocabulary.h"

#include <xercesc/dom/DOMDocument.hpp>

namespace Vellum::XMLBuilder {

ToXMLReferenceVisitor::~ToXMLReferenceVisitor() = default;

void ToXMLReferenceVisitor::visit(const Types::StrongReference& /*value*/) {
    ToXMLMetadataSetVisitor writer(m_property, m_context.withTypedReferences(true));
    m_target.accept(writer);
}

void ToXMLReferenceVisitor::visit(const Types::WeakReference& value) {
    const MetaMetadata::MetaMetadataSet* definition = m_target.definition();
    if (definition == nullptr) {
        return;
    }
    const WString* prefix = definition->property(Vocabulary::xmlDefaultPrefix);
    const WString* tagName = definition->property(Vocabulary::xmlTagName);
    const WString* namespaceName = definition->property(Vocabulary::xmlNamespaceURI);
    if (prefix == nullptr || tagName == nullptr || namespaceName == nullptr) {
        return;
    }
    xercesc::DOMDocument& document = *m_property.getOwnerDocument();
    const WString qualifiedName = *prefix + u':' + *tagName + Vocabulary::refSuffix;
    xercesc::DOMElement* element =
        document.createElementNS(namespaceName->c_str(), qualifiedName.c_str());
    m_property.appendChild(element);
    m_context.namespaces.enter(Vocabulary::typesNamespace, Vocabulary::typesPrefix);
    xercesc::DOMAttr* attribute =
        document.createAttributeNS(Vocabulary::typesNamespace, Vocabulary::targetInstance);
    element->setAttributeNodeNS(attribute);
    ToXMLBaseTypeVisitor attributeWriter(attribute);
    value.accept(attributeWriter);
}

} // namespace Vellum::XMLBuilder
