#ifndef VELLUM_METADATA_REFERENCEARRAYELEMENT_H
#define VELLUM_METADATA_REFERENCEARRAYELEMENT_H

#include "Vellum/Metadata/ReferenceCollectionElement.h"

namespace Vellum::Metadata {

/// An element whose value is an array (ordered) of references to sets.
class VELLUM_CORE_EXPORT ReferenceArrayElement : public ReferenceCollectionElement {
public:
    /// `itemType` is StrongReference or WeakReference.
    ReferenceArrayElement(MetadataSet& owner, AttributePtr attribute,
                          Types::Identifiers::Identifier itemType);
    ~ReferenceArrayElement() override;

    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;
};

} // namespace Vellum::Metadata

#endif
