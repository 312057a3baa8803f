#ifndef VELLUM_METADATA_METADATASET_H
#define VELLUM_METADATA_METADATASET_H

#include "Vellum/Core/Export.h"
#include "Vellum/KLV/Key.h"
#include "Vellum/Metadata/Element.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/Types/UniversalLabel.h"

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace Vellum::MetaMetadata {
class MetaMetadataSet;
} // namespace Vellum::MetaMetadata

namespace Vellum::Metadata {

class PartitionMetadata;

namespace detail {
class ElementBlock;
} // namespace detail

namespace Visitors {
class MetadataSetVisitor;
class NonConstMetadataSetVisitor;
} // namespace Visitors

/// One local set of header metadata.
///
/// Its valid elements are those its dictionary definition places in it, by label; a set made
/// from the dictionary has all of them, empty until given a value. Its invalid elements are
/// those the definition does not place there (known elsewhere, or unknown), in stored order.
/// The set remembers the order in which its items were stored and the size of its BER
/// length, so a set read and written unchanged gives back the same bytes.
///
/// Sets are owned by their `PartitionMetadata` and made only by it (`createMetadataSet`, or
/// when a partition is read).
class VELLUM_CORE_EXPORT MetadataSet {
public:
    using ElementList = std::vector<Element*>;

    /// Walks the valid elements in label order, giving (label, element) pairs.
    class VELLUM_CORE_EXPORT ValidIterator {
    public:
        using value_type = std::pair<const Types::UniversalLabel&, Element*>;
        using reference = value_type;
        using difference_type = std::ptrdiff_t;
        using iterator_category = std::input_iterator_tag;

        /// Holds the pair `operator->` points to.
        struct Arrow {
            value_type entry;
            const value_type* operator->() const noexcept { return &entry; }
        };

        ValidIterator() noexcept = default;
        explicit ValidIterator(Element* const* position) noexcept
            : m_position(position) {}

        value_type operator*() const noexcept;
        Arrow operator->() const noexcept { return Arrow{**this}; }
        ValidIterator& operator++() noexcept {
            ++m_position;
            return *this;
        }
        ValidIterator operator++(int) noexcept {
            ValidIterator before = *this;
            ++m_position;
            return before;
        }
        friend bool operator==(const ValidIterator& a, const ValidIterator& b) noexcept {
            return a.m_position == b.m_position;
        }
        friend bool operator!=(const ValidIterator& a, const ValidIterator& b) noexcept {
            return a.m_position != b.m_position;
        }

    private:
        Element* const* m_position = nullptr;
    };

    MetadataSet(const MetadataSet&) = delete;
    MetadataSet& operator=(const MetadataSet&) = delete;
    virtual ~MetadataSet();

    const KLV::Key& key() const noexcept { return m_key; }
    /// Octets of the set's BER length field.
    std::uint8_t berLength() const noexcept { return m_berOctets; }
    /// Whether the items' lengths are BER-coded (key byte 6 is 0x13) rather than 2 bytes.
    bool hasBERItemLengths() const noexcept;
    /// The dictionary's definition, or nullptr for a set kept without one.
    const MetaMetadata::MetaMetadataSet* definition() const noexcept { return m_definition; }
    /// The partition that owns the set.
    PartitionMetadata& partition() const noexcept { return *m_partition; }

    /// Valid elements, by label in label order.
    ValidIterator begin() const noexcept;
    ValidIterator end() const noexcept;
    std::size_t validCount() const noexcept;
    /// The valid element with this label (byte 8 not compared), or nullptr.
    Element* findElement(const Types::UniversalLabel& ul) const noexcept;

    /// Invalid elements, in stored order.
    ElementList::const_iterator invalidBegin() const noexcept { return m_invalid.begin(); }
    ElementList::const_iterator invalidEnd() const noexcept { return m_invalid.end(); }
    std::size_t invalidCount() const noexcept { return m_invalid.size(); }
    /// Makes an invalid element for `attribute` (a misplaced or unknown element), of the kind
    /// its definition asks for (a simple element holding raw bytes for an unknown one).
    Element* createInvalidElement(Element::AttributePtr attribute);

    /// The label that identifies the item `element` holds: its definition's, its own, or the
    /// one its local tag resolves to through its partition's primer (or, for a static tag,
    /// the dictionary). Nothing when only its local tag identifies it.
    static std::optional<Types::UniversalLabel> itemLabel(const Element& element);

    /// The element of this set that holds the same item as `like` (an element of any set:
    /// the same label, or the same local tag when `like` has no label), made when the set
    /// has none: a defined element, else a misplaced one the dictionary knows, else an
    /// unknown one with a local tag from this partition's primer.
    Element& elementFor(const Element& like);

    /// Takes the item out of the set: a defined element loses its value, any other element
    /// is removed. `element` must belong to this set.
    void removeElement(Element& element);

    /// Every element in the order the set writes them: stored items first, then the others in
    /// dictionary order.
    const ElementList& serializationOrder() const noexcept { return m_order; }
    /// The number of elements that hold a value.
    std::size_t valueCount() const noexcept;

    /// The instance identifier (the value of the InstanceUID element), or nullptr.
    const Types::UUID* instanceUID() const noexcept;

    virtual void accept(Visitors::MetadataSetVisitor& visitor) const;
    virtual void accept(Visitors::NonConstMetadataSetVisitor& visitor);

    /// The number of bytes `serialize` writes: key, length field and items.
    std::uint64_t serializedSize() const;
    /// Writes the set as a local set KLV. Every element holding a value must have a local tag
    /// (the partition assigns them before it writes); throws InvalidFormat otherwise, and
    /// InvalidLength for an item too long for a 2-byte length.
    void serialize(DataIO::DataSink& sink) const;

    /// Called by an element when its value changes.
    void elementChanged(const Element& element);

protected:
    friend class PartitionMetadata;
    friend class HeaderMetadataReader;

    MetadataSet(PartitionMetadata& partition, const KLV::Key& key,
                const MetaMetadata::MetaMetadataSet* definition);

    /// Makes one empty valid element per element of the definition, in dictionary order.
    void createDefinedElements();
    /// Moves `element` to the end of the stored order (used while reading items).
    void markStored(Element& element);
    void setBerLength(std::uint8_t octets) noexcept { m_berOctets = octets; }
    /// Removes an invalid element again (when its stored value turned out unreadable).
    void discardInvalidElement(Element* element);

private:
    std::uint64_t itemsSize() const;

    PartitionMetadata* m_partition;
    KLV::Key m_key;
    const MetaMetadata::MetaMetadataSet* m_definition;
    std::uint8_t m_berOctets = 4;
    /// The valid elements, made together with their lookup by label (nullptr for a set
    /// without a definition).
    std::unique_ptr<detail::ElementBlock> m_defined;
    /// The invalid elements.
    std::vector<std::unique_ptr<Element>> m_elements;
    ElementList m_invalid;
    ElementList m_order;
    std::size_t m_storedCount = 0;
    Element* m_instanceUID = nullptr;
};

} // namespace Vellum::Metadata

#endif
