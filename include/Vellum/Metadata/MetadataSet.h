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

    /// What the element iterators share: a position in a list of elements, stepped and
    /// compared; `Derived` adds what the position gives.
    template <typename Derived>
    class ElementPosition {
    public:
        ElementPosition() noexcept = default;
        explicit ElementPosition(Element* const* position) noexcept
            : m_position(position) {}

        Derived& operator++() noexcept {
            ++m_position;
            return static_cast<Derived&>(*this);
        }
        Derived operator++(int) noexcept {
            Derived before = static_cast<Derived&>(*this);
            ++m_position;
            return before;
        }
        friend bool operator==(const Derived& a, const Derived& b) noexcept {
            return a.m_position == b.m_position;
        }
        friend bool operator!=(const Derived& a, const Derived& b) noexcept {
            return a.m_position != b.m_position;
        }

    protected:
        Element* const* m_position = nullptr;
    };

    /// Walks a list of elements, giving `E*`: `Element*` from a set, `const Element*` from a
    /// const one.
    template <typename E>
    class ElementIterator : public ElementPosition<ElementIterator<E>> {
    public:
        using value_type = E*;
        using reference = E*;
        using pointer = void;
        using difference_type = std::ptrdiff_t;
        using iterator_category = std::forward_iterator_tag;

        using ElementPosition<ElementIterator<E>>::ElementPosition;
        E* operator*() const noexcept { return *this->m_position; }
    };

    /// A list of elements, seen through `ElementIterator<E>`.
    template <typename E>
    class ElementRange {
    public:
        explicit ElementRange(const ElementList& list) noexcept
            : m_list(&list) {}
        ElementIterator<E> begin() const noexcept { return ElementIterator<E>(m_list->data()); }
        ElementIterator<E> end() const noexcept {
            return ElementIterator<E>(m_list->data() + m_list->size());
        }
        std::size_t size() const noexcept { return m_list->size(); }
        bool empty() const noexcept { return m_list->empty(); }
        E* operator[](std::size_t index) const noexcept { return (*m_list)[index]; }

    private:
        const ElementList* m_list;
    };

    /// Walks the valid elements in label order, giving (label, element) pairs; `E` is
    /// `Element` from a set, `const Element` from a const one.
    template <typename E>
    class BasicValidIterator : public ElementPosition<BasicValidIterator<E>> {
    public:
        using value_type = std::pair<const Types::UniversalLabel&, E*>;
        using reference = value_type;
        using difference_type = std::ptrdiff_t;
        using iterator_category = std::input_iterator_tag;

        /// Holds the pair `operator->` points to.
        struct Arrow {
            value_type entry;
            const value_type* operator->() const noexcept { return &entry; }
        };

        using ElementPosition<BasicValidIterator<E>>::ElementPosition;
        value_type operator*() const noexcept {
            return {labelOf(**this->m_position), *this->m_position};
        }
        Arrow operator->() const noexcept { return Arrow{**this}; }
    };
    using ValidIterator = BasicValidIterator<Element>;
    using ConstValidIterator = BasicValidIterator<const Element>;

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
    const PartitionMetadata& partition() const noexcept { return *m_partition; }
    PartitionMetadata& partition() noexcept { return *m_partition; }

    /// Valid elements, by label in label order.
    ConstValidIterator begin() const noexcept { return ConstValidIterator(byLabelBegin()); }
    ConstValidIterator end() const noexcept { return ConstValidIterator(byLabelEnd()); }
    ValidIterator begin() noexcept { return ValidIterator(byLabelBegin()); }
    ValidIterator end() noexcept { return ValidIterator(byLabelEnd()); }
    std::size_t validCount() const noexcept;
    /// The valid element with this label (byte 8 not compared), or nullptr.
    const Element* findElement(const Types::UniversalLabel& ul) const noexcept;
    Element* findElement(const Types::UniversalLabel& ul) noexcept {
        return const_cast<Element*>(std::as_const(*this).findElement(ul));
    }
    /// The valid element with this label when it is a `T` (`SimpleElement`,
    /// `ReferenceElement` ...), else nullptr.
    template <typename T>
    const T* findElementAs(const Types::UniversalLabel& ul) const noexcept {
        return dynamic_cast<const T*>(findElement(ul));
    }
    template <typename T>
    T* findElementAs(const Types::UniversalLabel& ul) noexcept {
        return dynamic_cast<T*>(findElement(ul));
    }

    /// Invalid elements, in stored order.
    ElementIterator<const Element> invalidBegin() const noexcept {
        return ElementIterator<const Element>(m_invalid.data());
    }
    ElementIterator<const Element> invalidEnd() const noexcept {
        return ElementIterator<const Element>(m_invalid.data() + m_invalid.size());
    }
    ElementIterator<Element> invalidBegin() noexcept {
        return ElementIterator<Element>(m_invalid.data());
    }
    ElementIterator<Element> invalidEnd() noexcept {
        return ElementIterator<Element>(m_invalid.data() + m_invalid.size());
    }
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
    ElementRange<const Element> serializationOrder() const noexcept {
        return ElementRange<const Element>(m_order);
    }
    ElementRange<Element> serializationOrder() noexcept { return ElementRange<Element>(m_order); }
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
    /// The valid elements in label order (null for a set without a definition).
    Element* const* byLabelBegin() const noexcept;
    Element* const* byLabelEnd() const noexcept;
    static const Types::UniversalLabel& labelOf(const Element& element) noexcept;

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
