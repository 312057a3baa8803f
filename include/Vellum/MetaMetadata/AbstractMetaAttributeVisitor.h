#ifndef VELLUM_METAMETADATA_ABSTRACTMETAATTRIBUTEVISITOR_H
#define VELLUM_METAMETADATA_ABSTRACTMETAATTRIBUTEVISITOR_H

#include "Vellum/Core/Export.h"

namespace Vellum::MetaMetadata {

class UnknownAttribute;
class MisplacedAttribute;
class MetaAttribute;

/// Receives the concrete kind of an element's meta-attribute (double dispatch through
/// `AbstractMetaAttribute::accept`).
class VELLUM_CORE_EXPORT AbstractMetaAttributeVisitor {
public:
    AbstractMetaAttributeVisitor() = default;
    AbstractMetaAttributeVisitor(const AbstractMetaAttributeVisitor&) = default;
    AbstractMetaAttributeVisitor& operator=(const AbstractMetaAttributeVisitor&) = default;
    virtual ~AbstractMetaAttributeVisitor();

    /// An element the dictionary does not know.
    virtual void visit(const UnknownAttribute& attribute) = 0;
    /// A known element found in a set that does not define it.
    virtual void visit(const MisplacedAttribute& attribute) = 0;
    /// An element where the dictionary places it.
    virtual void visit(const MetaAttribute& attribute) = 0;
};

} // namespace Vellum::MetaMetadata

#endif
