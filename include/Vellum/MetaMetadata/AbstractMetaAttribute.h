#ifndef VELLUM_METAMETADATA_ABSTRACTMETAATTRIBUTE_H
#define VELLUM_METAMETADATA_ABSTRACTMETAATTRIBUTE_H

#include "Vellum/Core/Export.h"

namespace Vellum::MetaMetadata {

class AbstractMetaAttributeVisitor;

/// How one element of a metadata set relates to the dictionary: placed where the dictionary
/// puts it (`MetaAttribute`), known but in the wrong set (`MisplacedAttribute`), or unknown
/// (`UnknownAttribute`). Elements share these through shared pointers; they are immutable.
class VELLUM_CORE_EXPORT AbstractMetaAttribute {
public:
    virtual ~AbstractMetaAttribute();

    /// Calls the visitor's `visit` for the concrete kind. Throws whatever the visitor throws.
    virtual void accept(AbstractMetaAttributeVisitor& visitor) const = 0;

protected:
    AbstractMetaAttribute() = default;
    AbstractMetaAttribute(const AbstractMetaAttribute&) = default;
    AbstractMetaAttribute& operator=(const AbstractMetaAttribute&) = default;
};

} // namespace Vellum::MetaMetadata

#endif
