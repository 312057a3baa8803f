#include "XMLBuilder/ToXMLReferenceVisitor.h"

#include "XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/Vocabulary.h"

#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Types/StrongReference.h"
#include "Vellum/Types/WeakReference.h"

namespace Vellum::XMLBuilder {

ToXMLReferenceVisitor::~ToXMLReferenceVisitor() = default;

void ToXMLReferenceVisitor::visit(const Types::StrongReference& /*value*/) {
    ToXMLMetadataSetVisitor writer(m_sink, m_context.withTypedReferences(true));
    m_target.accept(writer);
}

void ToXMLReferenceVisitor::visit(const Types::WeakReference& value) {
    const MetaMetadata::MetaMetadataSet* definition = m_target.definition();
    if (definition == nullptr) {
        return;
    }
    const XMLNames::SetName& name = m_context.names.set(*definition);
    if (!name.valid) {
        return;
    }
    m_sink.startElement(name.namespaceName, name.refName);
    m_context.names.enterTypes();
    if (m_context.writesValues) {
        ToXMLBaseTypeVisitor::AttributeBuffer buffer;
        m_sink.attribute(Vocabulary::typesNamespace, Vocabulary::targetInstance,
                         ToXMLBaseTypeVisitor::attributeText(value, buffer));
    }
    m_sink.endElement();
}

} // namespace Vellum::XMLBuilder
