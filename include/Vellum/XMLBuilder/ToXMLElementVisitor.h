#ifndef VELLUM_XMLBUILDER_TOXMLELEMENTVISITOR_H
#define VELLUM_XMLBUILDER_TOXMLELEMENTVISITOR_H

#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/Visitors/ElementVisitor.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLBuilder/WriterContext.h"

#include <xercesc/dom/DOMElement.hpp>

namespace Vellum::Metadata {
class CollectionElement;
class Element;
class ReferenceCollectionElement;
} // namespace Vellum::Metadata

namespace Vellum::Types {
class Reference;
} // namespace Vellum::Types

namespace Vellum::XMLBuilder {

class ToXMLMetaAttributeVisitor;

/// Writes one element (property) of a set under the set's element: identity elements as
/// "rp210:" attributes, values through the value writer, collections item by item, elements
/// the dictionary does not place in the set inside "groups:ExtensionElements", and references
/// by identifier ("_REF") or by nesting the target. An element holding no value is not
/// written.
class VELLUM_XMLBUILDER_EXPORT ToXMLElementVisitor : public Metadata::Visitors::ElementVisitor {
public:
    /// `setElement` is the element of the set being written. All borrowed.
    ToXMLElementVisitor(xercesc::DOMElement& setElement, const WriterContext& context) noexcept
        : m_setElement(setElement)
        , m_context(context) {}
    ~ToXMLElementVisitor() override;

    void visit(const Metadata::ReferenceBatchElement& element) override;
    void visit(const Metadata::ReferenceArrayElement& element) override;
    void visit(const Metadata::ReferenceElement& element) override;
    void visit(const Metadata::BatchElement& element) override;
    void visit(const Metadata::ArrayElement& element) override;
    void visit(const Metadata::SimpleElement& element) override;

private:
    struct Name {
        WString tagName;
        WString prefix;
        WString namespaceName;
        WString qualified() const { return prefix + u':' + tagName; }
    };

    Name nameOf(const ToXMLMetaAttributeVisitor& attribute) const;
    xercesc::DOMElement* createPropertyElement(const Name& name, bool defined) const;
    void place(xercesc::DOMElement* property, const ToXMLMetaAttributeVisitor& attribute) const;
    void identify(xercesc::DOMElement* property, const ToXMLMetaAttributeVisitor& attribute) const;
    bool writesEmptyCollection(const Metadata::Element& element) const;
    void writeCollection(const Metadata::CollectionElement& element);
    void writeReferenceCollection(const Metadata::ReferenceCollectionElement& element);
    bool writeReference(const Types::Reference& reference, xercesc::DOMElement& property);
    void writeDangling(const Types::Reference& reference, xercesc::DOMElement& property) const;
    void writeByIdentifier(const Types::Reference& reference, xercesc::DOMElement& property,
                           const Metadata::PartitionMetadata::SetList& targets) const;

    xercesc::DOMElement& m_setElement;
    WriterContext m_context;
};

} // namespace Vellum::XMLBuilder

#endif
