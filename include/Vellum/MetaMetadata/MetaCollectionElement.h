#ifndef VELLUM_METAMETADATA_METACOLLECTIONELEMENT_H
#define VELLUM_METAMETADATA_METACOLLECTIONELEMENT_H

#include "Vellum/Core/Export.h"
#include "Vellum/MetaMetadata/MetaElement.h"

namespace Vellum::MetaMetadata {

/// An element whose value is a batch (unordered) or an array (ordered) of items of one type;
/// for a collection of references the item type is StrongReference, WeakReference or UUID.
class VELLUM_CORE_EXPORT MetaCollectionElement : public MetaElement {
public:
    /// Made by the dictionary's loader; `collectionKind` must be Batch or Array, otherwise
    /// this throws InvalidFormat naming the element.
    MetaCollectionElement(Definition definition, const MetaMetadataSet& definingSet,
                          Types::Identifiers::Identifier collectionKind);
    ~MetaCollectionElement() override;

    /// Batch or Array.
    Types::Identifiers::Identifier dataType() const noexcept override;
    /// Always true.
    bool isCollection() const noexcept override;
    /// The type of one item.
    Types::Identifiers::Identifier dataSubType() const noexcept { return valueType(); }

private:
    Types::Identifiers::Identifier m_collectionKind;
};

} // namespace Vellum::MetaMetadata

#endif
