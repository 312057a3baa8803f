#include "Vellum/Metadata/MetadataSet.h"

#include "Metadata/ElementBlock.h"
#include "Metadata/ElementFactory.h"
#include "Metadata/MetaElementOf.h"

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/BERLength.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaAttribute.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/MetaMetadata/MisplacedAttribute.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"
#include "Vellum/Metadata/PartitionDictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Metadata/Structural/StructuralMetadataULs.h"
#include "Vellum/Metadata/Visitors/MetadataSetVisitor.h"
#include "Vellum/Metadata/Visitors/NonConstMetadataSetVisitor.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

namespace Vellum::Metadata {
namespace {

bool isInstanceUID(const MetaMetadata::MetaElement* meta) {
    static const KLV::Key instanceUID(Structural::StructuralMetadataULs::instanceUID().data(), 16);
    return meta != nullptr && KLV::Key(meta->ul().data(), 16).equalsIgnoringVersion(instanceUID);
}

std::uint8_t lengthOctetsFor(std::uint64_t value, std::uint8_t stored) {
    return std::max(stored, KLV::BERLength::minimalOctets(value));
}

/// Erases the last entry of `list` that `matches`, if any.
template <class List, class Predicate>
void eraseLast(List& list, Predicate matches) {
    const auto found = std::find_if(list.rbegin(), list.rend(), matches);
    if (found != list.rend()) {
        list.erase(std::next(found).base());
    }
}

} // namespace

MetadataSet::MetadataSet(PartitionMetadata& partition, const KLV::Key& key,
                         const MetaMetadata::MetaMetadataSet* definition)
    : m_partition(&partition)
    , m_key(key)
    , m_definition(definition) {}

MetadataSet::~MetadataSet() = default;

bool MetadataSet::hasBERItemLengths() const noexcept {
    return KLV::hasBERItemLengths(m_key);
}

void MetadataSet::createDefinedElements() {
    if (m_definition == nullptr) {
        return;
    }
    const MetaMetadata::MetaMetadataSet::ElementList& metas = m_definition->elementsBySchemaIndex();
    m_defined = detail::ElementBlock::make(*this, metas);
    m_order.reserve(m_order.size() + metas.size());
    for (std::size_t i = 0; i < metas.size(); ++i) {
        Element* element = m_defined->begin()[i];
        m_order.push_back(element);
        if (isInstanceUID(metas[i])) {
            m_instanceUID = element;
        }
    }
}

const Types::UniversalLabel& MetadataSet::labelOf(const Element& element) noexcept {
    return detail::ElementBlock::labelOf(element);
}

Element* const* MetadataSet::byLabelBegin() const noexcept {
    return m_defined ? m_defined->byLabelBegin() : nullptr;
}

Element* const* MetadataSet::byLabelEnd() const noexcept {
    return m_defined ? m_defined->byLabelEnd() : nullptr;
}

std::size_t MetadataSet::validCount() const noexcept {
    return m_defined ? m_defined->labelCount() : 0;
}

const Element* MetadataSet::findElement(const Types::UniversalLabel& ul) const noexcept {
    if (!m_defined) {
        return nullptr;
    }
    if (const Element* exact = m_defined->find(ul)) {
        return exact;
    }
    const MetaMetadata::MetaElement* meta = m_definition->findElement(ul);
    return meta == nullptr ? nullptr : m_defined->find(meta->ul());
}

Element* MetadataSet::createInvalidElement(Element::AttributePtr attribute) {
    if (!attribute) {
        VELLUM_THROW(InvalidFormat, "an invalid element needs a meta-attribute");
    }
    const MetaMetadata::MetaElement* meta = detail::metaElementOf(*attribute);
    auto element = detail::makeElement(*this, std::move(attribute), meta);
    Element* raw = element.get();
    m_elements.push_back(std::move(element));
    m_invalid.push_back(raw);
    m_order.push_back(raw);
    if (m_instanceUID == nullptr && isInstanceUID(raw->metaElement())) {
        m_instanceUID = raw;
    }
    return raw;
}

void MetadataSet::discardInvalidElement(Element* element) {
    if (m_instanceUID == element) {
        m_instanceUID = nullptr;
    }
    // Each list holds the element once. The reader discards the element it has just made,
    // the last of each list, so searching from the back keeps reading a set linear in its
    // number of items.
    eraseLast(m_invalid, [element](const Element* e) { return e == element; });
    eraseLast(m_order, [element](const Element* e) { return e == element; });
    eraseLast(m_elements, [element](const auto& e) { return e.get() == element; });
}

std::optional<Types::UniversalLabel> MetadataSet::itemLabel(const Element& element) {
    if (const MetaMetadata::MetaElement* meta = element.metaElement()) {
        return meta->ul();
    }
    const auto* unknown =
        dynamic_cast<const MetaMetadata::UnknownAttribute*>(element.metaAttribute().get());
    if (unknown == nullptr) {
        return std::nullopt;
    }
    if (const Types::UniversalLabel* ul = unknown->universalLabel()) {
        return *ul;
    }
    const PartitionDictionary& primer = element.owner().partition().partitionDictionary();
    if (const Types::UniversalLabel* ul = primer.lookup(unknown->localTag())) {
        return *ul;
    }
    if (unknown->localTag().isStaticLocalTag()) {
        if (const auto* meta =
                primer.dictionary()->findElementByStaticTag(unknown->localTag().value())) {
            return meta->ul();
        }
    }
    return std::nullopt;
}

Element& MetadataSet::elementFor(const Element& like) {
    const std::optional<Types::UniversalLabel> label = itemLabel(like);
    if (!label) {
        const auto* unknown =
            dynamic_cast<const MetaMetadata::UnknownAttribute*>(like.metaAttribute().get());
        const Types::LocalTag tag = unknown != nullptr ? unknown->localTag() : *like.localTag();
        for (Element* element : m_invalid) {
            if (!itemLabel(*element) && element->localTag() == tag) {
                return *element;
            }
        }
        Element* made = createInvalidElement(std::make_shared<MetaMetadata::UnknownAttribute>(
            tag, MetaMetadata::UnknownAttribute::LocalTagNotResolved));
        made->setLocalTag(tag);
        return *made;
    }
    if (Element* defined = findElement(*label)) {
        return *defined;
    }
    const KLV::Key wanted(label->data(), 16);
    for (Element* element : m_invalid) {
        const auto own = itemLabel(*element);
        if (own && KLV::Key(own->data(), 16).equalsIgnoringVersion(wanted)) {
            return *element;
        }
    }
    PartitionDictionary& primer = m_partition->partitionDictionary();
    if (const MetaMetadata::MetaElement* meta = primer.dictionary()->findElement(*label)) {
        return *createInvalidElement(std::make_shared<MetaMetadata::MisplacedAttribute>(*meta));
    }
    return *createInvalidElement(
        std::make_shared<MetaMetadata::UnknownAttribute>(primer.findOrGenerate(*label), *label));
}

void MetadataSet::removeElement(Element& element) {
    if (std::find(m_invalid.begin(), m_invalid.end(), &element) == m_invalid.end()) {
        element.clear();
        return;
    }
    const auto position = std::find(m_order.begin(), m_order.end(), &element);
    if (position - m_order.begin() < static_cast<std::ptrdiff_t>(m_storedCount)) {
        --m_storedCount;
    }
    discardInvalidElement(&element);
}

void MetadataSet::markStored(Element& element) {
    const auto it = std::find(m_order.begin() + static_cast<std::ptrdiff_t>(m_storedCount),
                              m_order.end(), &element);
    if (it == m_order.end()) {
        return; // already among the stored items
    }
    std::rotate(m_order.begin() + static_cast<std::ptrdiff_t>(m_storedCount), it, it + 1);
    ++m_storedCount;
}

std::size_t MetadataSet::valueCount() const noexcept {
    return static_cast<std::size_t>(std::count_if(m_order.begin(), m_order.end(),
                                                  [](const Element* e) { return !e->isEmpty(); }));
}

const Types::UUID* MetadataSet::instanceUID() const noexcept {
    const auto* element = dynamic_cast<const SimpleElement*>(m_instanceUID);
    return element == nullptr ? nullptr : dynamic_cast<const Types::UUID*>(element->value());
}

void MetadataSet::accept(Visitors::MetadataSetVisitor& visitor) const {
    visitor.visit(*this);
}

void MetadataSet::accept(Visitors::NonConstMetadataSetVisitor& visitor) {
    visitor.visit(*this);
}

void MetadataSet::elementChanged(const Element& element) {
    if (&element == m_instanceUID) {
        m_partition->instanceUIDChanged();
    }
}

std::uint64_t MetadataSet::itemsSize() const {
    std::uint64_t total = 0;
    for (const Element* element : m_order) {
        if (element->isEmpty()) {
            continue;
        }
        const std::uint64_t size = element->valueSize();
        const std::uint64_t lengthField =
            hasBERItemLengths() ? lengthOctetsFor(size, element->lengthOctets()) : 2;
        total += 2 + lengthField + size;
    }
    return total;
}

std::uint64_t MetadataSet::serializedSize() const {
    const std::uint64_t items = itemsSize();
    return KLV::Key::byteCount + lengthOctetsFor(items, m_berOctets) + items;
}

void MetadataSet::serialize(DataIO::DataSink& sink) const {
    const std::uint64_t items = itemsSize();
    m_key.serialize(sink);
    KLV::BERLength(items, lengthOctetsFor(items, m_berOctets)).write(sink);
    for (const Element* element : m_order) {
        if (element->isEmpty()) {
            continue;
        }
        if (!element->localTag()) {
            VELLUM_THROW(InvalidFormat, "an element of set " + m_key.toUtf8() +
                                            " has no local tag; write the set through its "
                                            "partition, which assigns tags");
        }
        const std::uint64_t size = element->valueSize();
        sink.writeUInt16(element->localTag()->value());
        if (hasBERItemLengths()) {
            KLV::BERLength(size, lengthOctetsFor(size, element->lengthOctets())).write(sink);
        } else if (size > 0xFFFF) {
            VELLUM_THROW(InvalidLength,
                         "the item with local tag " + std::to_string(element->localTag()->value()) +
                             " of set " + m_key.toUtf8() + " has " + std::to_string(size) +
                             " bytes, more than a 2-byte length can hold");
        } else {
            sink.writeUInt16(static_cast<std::uint16_t>(size));
        }
        element->serializeValue(sink);
    }
}

namespace Visitors {
MetadataSetVisitor::~MetadataSetVisitor() = default;
NonConstMetadataSetVisitor::~NonConstMetadataSetVisitor() = default;
} // namespace Visitors

} // namespace Vellum::Metadata
