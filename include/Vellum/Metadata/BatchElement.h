#ifndef VELLUM_METADATA_BATCHELEMENT_H
#define VELLUM_METADATA_BATCHELEMENT_H

#include "Vellum/Metadata/CollectionElement.h"
#include "Vellum/Types/Batch.h"

namespace Vellum::Metadata {

/// An element whose value is a batch (unordered) of simple values.
class VELLUM_CORE_EXPORT BatchElement : public CollectionElement {
public:
    BatchElement(MetadataSet& owner, AttributePtr attribute,
                 Types::Identifiers::Identifier itemType);
    ~BatchElement() override;

    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;

    /// Takes `batch` as the new value; throws InvalidFormat for a null batch or one whose
    /// items are not of the element's item type.
    void set(Templates::auto_ptr<Types::Batch> batch);
};

} // namespace Vellum::Metadata

#endif
