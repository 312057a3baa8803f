#ifndef VELLUM_XMLBUILDER_TOXMLREFERENCEVISITOR_H
#define VELLUM_XMLBUILDER_TOXMLREFERENCEVISITOR_H

#include "Vellum/Types/Visitors/NullVisitor.h"
#include "Vellum/XMLBuilder/Export.h"
#include "Vellum/XMLBuilder/WriterContext.h"

#include <xercesc/dom/DOMElement.hpp>

namespace Vellum::XMLBuilder {

/// Writes a reference value when the export writes typed references: a strong reference
/// nests its target set inside the property element, a weak one names the target with an
/// element "<target's name>_REF" carrying "types:TargetInstance".
class VELLUM_XMLBUILDER_EXPORT ToXMLReferenceVisitor : public Types::Visitors::NullVisitor {
public:
    /// `target` is the reference's first target set, `property` the property element; all
    /// borrowed.
    ToXMLReferenceVisitor(const Metadata::MetadataSet& target, xercesc::DOMElement& property,
                          const WriterContext& context) noexcept
        : m_target(target)
        , m_property(property)
        , m_context(context) {}
    ~ToXMLReferenceVisitor() override;

    using NullVisitor::visit;

    void visit(const Types::StrongReference& value) override;
    void visit(const Types::WeakReference& value) override;

private:
    const Metadata::MetadataSet& m_target;
    xercesc::DOMElement& m_property;
    WriterContext m_context;
};

} // namespace Vellum::XMLBuilder

#endif
