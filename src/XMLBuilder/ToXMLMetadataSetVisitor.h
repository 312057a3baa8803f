#ifndef VELLUM_SRC_XMLBUILDER_TOXMLMETADATASETVISITOR_H
#define VELLUM_SRC_XMLBUILDER_TOXMLMETADATASETVISITOR_H

#include "XMLBuilder/MarkupSink.h"
#include "XMLBuilder/ToXMLElementVisitor.h"
#include "XMLBuilder/WriterContext.h"

#include "Vellum/Metadata/Visitors/MetadataSetVisitor.h"
#include "Vellum/XMLBuilder/Export.h"

namespace Vellum::XMLBuilder {

/// Writes one metadata set as one element: named from its definition, with its identity
/// elements as attributes, then the elements the dictionary does not place in it (inside
/// "groups:ExtensionElements"), then its own by "SchemaIndex". A set without definition is
/// written in the dark form into "groups:FloatingDarkMetadata". A set already written in the
/// pass is skipped. Without typed references, the set's strong targets follow it under the
/// document element, depth first in the order its references name them.
class VELLUM_XMLBUILDER_EXPORT ToXMLMetadataSetVisitor
    : public Metadata::Visitors::MetadataSetVisitor {
public:
    /// `parent` receives the set element; it and `context` are borrowed.
    ToXMLMetadataSetVisitor(MarkupSink& parent, const WriterContext& context) noexcept
        : m_parent(parent)
        , m_context(context) {}
    ~ToXMLMetadataSetVisitor() override;

    void visit(const Metadata::MetadataSet& set) override;

private:
    using TargetList = ToXMLElementVisitor::TargetList;

    /// Writes `set` into `sink` unless the pass wrote it; its strong targets to write next
    /// are added to `targets`.
    void write(const Metadata::MetadataSet& set, MarkupSink& sink, TargetList& targets);
    void writeElements(const Metadata::MetadataSet& set, MarkupSink& sink, TargetList& targets);

    MarkupSink& m_parent;
    WriterContext m_context;
};

} // namespace Vellum::XMLBuilder

#endif
