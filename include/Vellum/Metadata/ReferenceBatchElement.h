#ifndef VELLUM_METADATA_REFERENCEBATCHELEMENT_H
#define VELLUM_METADATA_REFERENCEBATCHELEMENT_H

#include "Vellum/Metadata/ReferenceCollectionElement.h"

namespace Vellum::Metadata {

/// An element whose value is a batch (unordered) of references to sets.
class VELLUM_CORE_EXPORT ReferenceBatchElement : public ReferenceCollectionElement {
public:
    /// `itemType` is StrongReference or WeakReference.
    ReferenceBatchElement(MetadataSet& owner, AttributePtr attribute,
                          Types::Identifiers::Identifier itemType);
    ~ReferenceBatchElement() override;

    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;
};

} // namespace Vellum::Metadata

#endif
