#ifndef VELLUM_METADATA_ARRAYELEMENT_H
#define VELLUM_METADATA_ARRAYELEMENT_H

#include "Vellum/Metadata/CollectionElement.h"
#include "Vellum/Types/Array.h"

namespace Vellum::Metadata {

/// An element whose value is an array (ordered) of simple values.
class VELLUM_CORE_EXPORT ArrayElement : public CollectionElement {
public:
    ArrayElement(MetadataSet& owner, AttributePtr attribute,
                 Types::Identifiers::Identifier itemType);
    ~ArrayElement() override;

    void accept(Visitors::ElementVisitor& visitor) const override;
    void accept(Visitors::NonConstElementVisitor& visitor) override;

    /// Takes `array` as the new value; throws InvalidFormat for a null array or one whose
    /// items are not of the element's item type.
    void set(Templates::auto_ptr<Types::Array> array);
};

} // namespace Vellum::Metadata

#endif
