#ifndef VELLUM_SRC_METADATA_ELEMENTBLOCK_H
#define VELLUM_SRC_METADATA_ELEMENTBLOCK_H

#include "Vellum/Metadata/Element.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace Vellum::Types {
class UniversalLabel;
} // namespace Vellum::Types

namespace Vellum::Metadata::detail {

/// The elements a set's definition lists, made together in one allocation with the tables
/// that find them: a set made from the dictionary has an element for every item its
/// definition lists, and making each on its own dominated the cost of making sets. The block
/// owns the elements and destroys them with itself; they keep their addresses for its life.
class ElementBlock {
public:
    /// One element per entry of `metas`, in that order, of the kind each asks for, with the
    /// entry's shared attribute; all owned by `owner`.
    static std::unique_ptr<ElementBlock>
    make(MetadataSet& owner, const std::vector<const MetaMetadata::MetaElement*>& metas);

    ElementBlock(const ElementBlock&) = delete;
    ElementBlock& operator=(const ElementBlock&) = delete;
    ~ElementBlock();

    /// Gives back the block's memory (made by `make` for the block and its elements together).
    static void operator delete(void* block) noexcept;

    /// Every element, in the order of the entries `make` was given.
    std::size_t size() const noexcept { return m_count; }
    Element* const* begin() const noexcept { return inGivenOrder(); }
    Element* const* end() const noexcept { return inGivenOrder() + m_count; }

    /// The elements by label in label order, each label once: of elements sharing a label,
    /// the first given.
    Element* const* byLabelBegin() const noexcept { return byLabel(); }
    Element* const* byLabelEnd() const noexcept { return byLabel() + m_labelCount; }
    std::size_t labelCount() const noexcept { return m_labelCount; }

    /// The element with exactly this label, or nullptr.
    Element* find(const Types::UniversalLabel& ul) const noexcept;

    /// The label of `element`, an element of a block.
    static const Types::UniversalLabel& labelOf(const Element& element) noexcept;

private:
    explicit ElementBlock(std::size_t capacity) noexcept
        : m_capacity(capacity) {}

    Element** inGivenOrder() const noexcept;
    Element** byLabel() const noexcept;

    std::size_t m_capacity;
    /// Elements made so far (all of them once `make` returns).
    std::size_t m_count = 0;
    std::size_t m_labelCount = 0;
};

} // namespace Vellum::Metadata::detail

#endif
