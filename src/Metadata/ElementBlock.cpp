#include "Metadata/ElementBlock.h"

#include "Metadata/ElementFactory.h"

#include "Vellum/MetaMetadata/MetaAttribute.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Types/UniversalLabel.h"

#include <algorithm>
#include <new>

namespace Vellum::Metadata::detail {
namespace {

// The block's memory: the block itself, the elements' pointers in the given order and in
// label order, then the elements.
constexpr std::size_t roundedTo(std::size_t size, std::size_t alignment) {
    return (size + alignment - 1) / alignment * alignment;
}

constexpr std::size_t tablesOffset = roundedTo(sizeof(ElementBlock), alignof(Element*));

} // namespace

std::unique_ptr<ElementBlock>
ElementBlock::make(MetadataSet& owner, const std::vector<const MetaMetadata::MetaElement*>& metas) {
    // Two tables of element pointers (the size of a pointer is meant), then the elements.
    // NOLINTNEXTLINE(bugprone-sizeof-expression)
    const std::size_t tables = 2 * metas.size() * sizeof(Element*);
    const std::size_t header = roundedTo(tablesOffset + tables, elementAlignment());
    std::size_t total = header;
    for (const MetaMetadata::MetaElement* meta : metas) {
        total += elementSize(elementKindOf(meta));
    }
    void* memory = ::operator new(total);
    // From here the block owns the memory; should making an element throw, its destructor
    // destroys the elements made so far.
    std::unique_ptr<ElementBlock> block(::new (memory) ElementBlock(metas.size()));
    auto* bytes = static_cast<unsigned char*>(memory);
    std::size_t offset = header;
    Element** given = block->inGivenOrder();
    for (const MetaMetadata::MetaElement* meta : metas) {
        given[block->m_count] = constructElement(bytes + offset, owner, meta->attribute(), meta);
        ++block->m_count;
        offset += elementSize(elementKindOf(meta));
    }

    Element** const sorted = block->byLabel();
    std::copy(given, given + block->m_count, sorted);
    // The elements lie in the given order, so ordering equal labels by address puts the first
    // given first, the one kept.
    std::sort(sorted, sorted + block->m_count, [](const Element* a, const Element* b) {
        const Types::UniversalLabel& x = labelOf(*a);
        const Types::UniversalLabel& y = labelOf(*b);
        return x < y || (x == y && a < b);
    });
    block->m_labelCount = static_cast<std::size_t>(
        std::unique(sorted, sorted + block->m_count,
                    [](const Element* a, const Element* b) { return labelOf(*a) == labelOf(*b); }) -
        sorted);
    return block;
}

ElementBlock::~ElementBlock() {
    Element** elements = inGivenOrder();
    while (m_count != 0) {
        elements[--m_count]->~Element();
    }
}

void ElementBlock::operator delete(void* block) noexcept {
    ::operator delete(block);
}

Element* ElementBlock::find(const Types::UniversalLabel& ul) const noexcept {
    const auto found =
        std::lower_bound(byLabelBegin(), byLabelEnd(), ul,
                         [](const Element* element, const Types::UniversalLabel& label) {
                             return labelOf(*element) < label;
                         });
    return found != byLabelEnd() && labelOf(**found) == ul ? *found : nullptr;
}

const Types::UniversalLabel& ElementBlock::labelOf(const Element& element) noexcept {
    return element.metaElement()->ul();
}

Element** ElementBlock::inGivenOrder() const noexcept {
    auto* bytes = reinterpret_cast<unsigned char*>(const_cast<ElementBlock*>(this));
    return reinterpret_cast<Element**>(bytes + tablesOffset);
}

Element** ElementBlock::byLabel() const noexcept {
    return inGivenOrder() + m_capacity;
}

} // namespace Vellum::Metadata::detail
