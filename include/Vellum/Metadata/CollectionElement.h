#ifndef VELLUM_METADATA_COLLECTIONELEMENT_H
#define VELLUM_METADATA_COLLECTIONELEMENT_H

#include "Vellum/Metadata/Element.h"
#include "Vellum/Types/Collection.h"
#include "Vellum/Types/Identifiers.h"

namespace Vellum::Metadata {

/// The common part of elements whose value is a batch or an array: the collection (owned),
/// item access and appending. A collection with no items is a value; an element without a
/// collection holds none.
class VELLUM_CORE_EXPORT CollectionElement : public Element {
public:
    ~CollectionElement() override;

    /// Batch or Array.
    Types::Identifiers::Identifier collectionKind() const noexcept { return m_kind; }
    /// The type of the items, as the dictionary gives it.
    Types::Identifiers::Identifier itemType() const noexcept { return m_itemType; }
    /// The collection, or nullptr when the element holds none.
    const Types::Collection* collection() const noexcept { return m_items.get(); }

    /// The number of items (0 when the element holds no collection).
    std::uint32_t size() const noexcept { return m_items ? m_items->size() : 0; }
    /// The item at `index`; throws InvalidLength if there is no such item.
    const Types::SimpleDataType& at(std::uint32_t index) const;
    /// Appends a value, starting a collection (item size from the value) when there is none.
    /// Throws InvalidFormat for a value of another type than the items'.
    void append(Templates::auto_ptr<Types::SimpleDataType> item);

    bool isEmpty() const noexcept override { return !m_items; }
    void clear() noexcept override;
    std::uint64_t valueSize() const override;
    void serializeValue(DataIO::DataSink& sink) const override;
    void readValue(DataIO::Slice bytes) override;

protected:
    CollectionElement(MetadataSet& owner, AttributePtr attribute,
                      Types::Identifiers::Identifier kind, Types::Identifiers::Identifier itemType);

    /// Takes a whole collection of the element's kind; throws InvalidFormat for a null one,
    /// one of the other kind, or one whose items are of another type.
    void setCollection(Templates::auto_ptr<Types::Collection> items);

private:
    Types::Identifiers::Identifier m_kind;
    Types::Identifiers::Identifier m_itemType;
    Templates::auto_ptr<Types::Collection> m_items;
};

} // namespace Vellum::Metadata

#endif
