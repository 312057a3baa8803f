#ifndef VELLUM_METADATA_VISITORS_ELEMENTVISITOR_H
#define VELLUM_METADATA_VISITORS_ELEMENTVISITOR_H

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

/// Read-only visitor over the kinds of element, reached through `Element::accept`.
class VELLUM_CORE_EXPORT ElementVisitor {
public:
    ElementVisitor() = default;
    ElementVisitor(const ElementVisitor&) = default;
    ElementVisitor& operator=(const ElementVisitor&) = default;
    virtual ~ElementVisitor();

    virtual void visit(const ReferenceBatchElement& element) = 0;
    virtual void visit(const ReferenceArrayElement& element) = 0;
    virtual void visit(const ReferenceElement& element) = 0;
    virtual void visit(const BatchElement& element) = 0;
    virtual void visit(const ArrayElement& element) = 0;
    virtual void visit(const SimpleElement& element) = 0;
};

} // namespace Vellum::Metadata::Visitors

#endif
