#ifndef VELLUM_SRC_XMLBUILDER_TOXMLREFERENCEVISITOR_H
#define VELLUM_SRC_XMLBUILDER_TOXMLREFERENCEVISITOR_H

#include "XMLBuilder/MarkupSink.h"
#include "XMLBuilder/WriterContext.h"

#include "Vellum/Types/Visitors/NullVisitor.h"
#include "Vellum/XMLBuilder/Export.h"

namespace Vellum::Metadata {
class MetadataSet;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

/// Writes a reference value when the export writes typed references: a strong reference
/// nests its target set inside the property element, a weak one names the target with an
/// element "<target's name>_REF" carrying "types:TargetInstance".
class VELLUM_XMLBUILDER_EXPORT ToXMLReferenceVisitor : public Types::Visitors::NullVisitor {
public:
    /// `target` is the reference's first target set; `sink` is inside the property element.
    /// All borrowed.
    ToXMLReferenceVisitor(const Metadata::MetadataSet& target, MarkupSink& sink,
                          const WriterContext& context) noexcept
        : m_target(target)
        , m_sink(sink)
        , m_context(context) {}
    ~ToXMLReferenceVisitor() override;

    using NullVisitor::visit;

    void visit(const Types::StrongReference& value) override;
    void visit(const Types::WeakReference& value) override;

private:
    const Metadata::MetadataSet& m_target;
    MarkupSink& m_sink;
    WriterContext m_context;
};

} // namespace Vellum::XMLBuilder

#endif
