#ifndef VELLUM_METADATA_REFERENCECOLLECTIONELEMENT_H
#define VELLUM_METADATA_REFERENCECOLLECTIONELEMENT_H

#include "Vellum/Metadata/CollectionElement.h"
#include "Vellum/Types/Reference.h"

namespace Vellum::Metadata {

/// The common part of elements whose value is a batch or an array of references to sets.
class VELLUM_CORE_EXPORT ReferenceCollectionElement : public CollectionElement {
public:
    ~ReferenceCollectionElement() override;

    /// The reference at `index`; throws InvalidLength if there is no such item.
    const Types::Reference& referenceAt(std::uint32_t index) const;
    /// Appends a reference to `target`, a set that exists, by its instance identifier. Throws
    /// InvalidFormat for a null target or one without an instance identifier.
    void append(const MetadataSet* target);
    /// Appends a reference by identifier whose target is not checked.
    void appendUnverified(Templates::auto_ptr<Types::Reference> reference);
    using CollectionElement::append;

protected:
    ReferenceCollectionElement(MetadataSet& owner, AttributePtr attribute,
                               Types::Identifiers::Identifier kind,
                               Types::Identifiers::Identifier itemType);
};

} // namespace Vellum::Metadata

#endif
