#ifndef VELLUM_METADATA_VISITORS_NONCONSTELEMENTVISITOR_H
#define VELLUM_METADATA_VISITORS_NONCONSTELEMENTVISITOR_H

#include "Vellum/Core/Export.h"

namespace Vellum::Metadata {
class ReferenceBatchElement;
class ReferenceArrayElement;
class ReferenceElement;
class BatchElement;
class ArrayElement;
class SimpleElement;
} // namespace Vellum::Metadata

namespace Vellum::Metadata::Visitors {

/// Visitor over the kinds of element that may change them, reached through `Element::accept`.
class VELLUM_CORE_EXPORT NonConstElementVisitor {
public:
    NonConstElementVisitor() = default;
    NonConstElementVisitor(const NonConstElementVisitor&) = default;
    NonConstElementVisitor& operator=(const NonConstElementVisitor&) = default;
    virtual ~NonConstElementVisitor();

    virtual void visit(ReferenceBatchElement& element) = 0;
    virtual void visit(ReferenceArrayElement& element) = 0;
    virtual void visit(ReferenceElement& element) = 0;
    virtual void visit(BatchElement& element) = 0;
    virtual void visit(ArrayElement& element) = 0;
    virtual void visit(SimpleElement& element) = 0;
};

} // namespace Vellum::Metadata::Visitors

#endif
