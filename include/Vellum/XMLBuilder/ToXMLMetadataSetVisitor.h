#ifndef VELLUM_XMLBUILDER_TOXMLMETADATASETVISITOR_H
#define VELLUM_XMLBUILDER_TOXMLMETADATASETVISITOR_H

#include "Vellum/Metadata/Visitors/MetadataSetVisitor.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLBuilder/WriterContext.h"

#include <xercesc/dom/DOMElement.hpp>

namespace Vellum::XMLBuilder {

/// Writes one metadata set as one element under a parent: named from its definition, with
/// its elements (those the dictionary does not place first, then the others by "SchemaIndex").
/// A set without definition is written in the dark form into "groups:FloatingDarkMetadata".
/// A set already written in the pass is skipped.
class VELLUM_XMLBUILDER_EXPORT ToXMLMetadataSetVisitor
    : public Metadata::Visitors::MetadataSetVisitor {
public:
    /// `parent` receives the set element; it and `context` are borrowed.
    ToXMLMetadataSetVisitor(xercesc::DOMElement& parent, const WriterContext& context) noexcept
        : m_parent(parent)
        , m_context(context) {}
    ~ToXMLMetadataSetVisitor() override;

    void visit(const Metadata::MetadataSet& set) override;

private:
    void writeElements(const Metadata::MetadataSet& set, xercesc::DOMElement& setElement) const;

    xercesc::DOMElement& m_parent;
    WriterContext m_context;
};

} // namespace Vellum::XMLBuilder

#endif
