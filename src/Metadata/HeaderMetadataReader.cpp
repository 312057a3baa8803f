#include "Metadata/HeaderMetadataReader.h"

#include "Vellum/DataIO/Memory/MemoryDataSource.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/KLV/TripletReader.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/MetaMetadata/MisplacedAttribute.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"
#include "Vellum/Metadata/DarkParsedGroup.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/Unknown.h"
#include "Vellum/Utils/StringConversion.h"

#include <algorithm>
#include <string>

namespace Vellum::Metadata {
namespace {

std::string at(std::uint64_t offset) {
    return "offset " + std::to_string(offset);
}

bool allZero(DataIO::Slice bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t b) { return b == 0; });
}

} // namespace

void HeaderMetadataReader::read(DataIO::Slice bytes, std::uint64_t offset) {
    DataIO::Memory::MemoryDataSource source(bytes, offset);
    KLV::TripletReader reader(source);
    const auto primer = reader.next();
    if (!primer || !KLV::isPrimerPack(primer->key)) {
        VELLUM_THROW(InvalidFormat, "header metadata must start with the primer pack; found " +
                                        (primer ? "key " + primer->key.toUtf8() : "nothing") +
                                        " at " + at(offset));
    }
    m_partition.m_primer.readPrimerPack(primer->key, primer->length.octets(),
                                        source.take(primer->length.value(), "primer pack"),
                                        primer->valueOffset());
    while (source.remaining() != 0) {
        // Some writers pad the header metadata with zero bytes; keep them as they are.
        if (source.rest().begin()[0] == 0 && allZero(source.rest())) {
            m_partition.addFill(source.rest());
            break;
        }
        const auto triplet = reader.next();
        const DataIO::Slice value = source.take(triplet->length.value(), "KLV value");
        if (KLV::isFill(triplet->key)) {
            m_partition.addFill(
                bytes.sub(triplet->offset - offset, triplet->endOffset() - triplet->offset));
        } else if (KLV::isLocalSet(triplet->key)) {
            readSet(*triplet, value);
        } else {
            m_partition.adoptDark(std::make_unique<DarkMetadataSet>(
                triplet->key, triplet->length.octets(), KLV::Value(value.begin(), value.size())));
        }
    }
}

void HeaderMetadataReader::readSet(const KLV::Triplet& triplet, DataIO::Slice value) {
    const auto& dictionary = *m_partition.m_primer.dictionary();
    const MetaMetadata::MetaMetadataSet* definition =
        dictionary.findSet(KLV::withTwoByteItemLengths(triplet.key));
    std::unique_ptr<MetadataSet> set;
    if (definition != nullptr) {
        set.reset(new MetadataSet(m_partition, triplet.key, definition));
        set->createDefinedElements();
    } else {
        set.reset(new DarkParsedGroup(m_partition, triplet.key));
    }
    set->setBerLength(triplet.length.octets());

    DataIO::Memory::MemoryDataSource items(value, triplet.valueOffset());
    const bool berLengths = set->hasBERItemLengths();
    while (items.remaining() != 0) {
        const std::uint64_t itemOffset = items.position();
        items.require(berLengths ? 3 : 4, "local set item header");
        const Types::LocalTag tag(items.readUInt16());
        // A 2-byte item length is a plain 16-bit count, not a BER form.
        const std::uint64_t length =
            berLengths ? KLV::BERLength::read(items).value() : items.readUInt16();
        const std::uint8_t lengthOctets =
            berLengths ? static_cast<std::uint8_t>(items.position() - itemOffset - 2) : 0;
        if (length > items.remaining()) {
            VELLUM_THROW(InvalidLength, "the item with local tag " +
                                            Utils::wstringToString(tag.toString()) + " at " +
                                            at(itemOffset) + " claims " + std::to_string(length) +
                                            " bytes, but its set (key " + triplet.key.toUtf8() +
                                            " at " + at(triplet.offset) + ") has only " +
                                            std::to_string(items.remaining()) + " left");
        }
        Element& element = placeItem(*set, tag, items.take(length));
        element.setLocalTag(tag);
        element.setLengthOctets(lengthOctets);
        set->markStored(element);
    }
    m_partition.adoptSet(std::move(set));
}

Element& HeaderMetadataReader::placeItem(MetadataSet& set, const Types::LocalTag& tag,
                                         DataIO::Slice bytes) {
    const auto& dictionary = *m_partition.m_primer.dictionary();
    const Types::UniversalLabel* ul = m_partition.m_primer.lookup(tag);
    if (ul == nullptr && tag.isStaticLocalTag()) {
        if (const auto* meta = dictionary.findElementByStaticTag(tag.value())) {
            ul = &meta->ul();
        }
    }
    if (ul == nullptr) {
        return keepRaw(set, tag, bytes);
    }
    if (Element* element = set.findElement(*ul); element != nullptr && element->isEmpty()) {
        try {
            element->readValue(bytes);
            return *element;
        } catch (const Exceptions::BaseException&) {
            return keepRaw(set, tag, bytes); // a value that does not fit its type
        }
    }
    const MetaMetadata::MetaElement* known = dictionary.findElement(*ul);
    if (known != nullptr && set.findElement(*ul) == nullptr) {
        Element* element =
            set.createInvalidElement(std::make_shared<MetaMetadata::MisplacedAttribute>(*known));
        try {
            element->readValue(bytes);
            return *element;
        } catch (const Exceptions::BaseException&) {
            set.discardInvalidElement(element);
        }
    }
    return keepRaw(set, tag, bytes);
}

Element& HeaderMetadataReader::keepRaw(MetadataSet& set, const Types::LocalTag& tag,
                                       DataIO::Slice bytes) {
    const Types::UniversalLabel* ul = m_partition.m_primer.lookup(tag);
    auto attribute = ul != nullptr ? std::make_shared<MetaMetadata::UnknownAttribute>(tag, *ul)
                                   : std::make_shared<MetaMetadata::UnknownAttribute>(
                                         tag, MetaMetadata::UnknownAttribute::LocalTagNotResolved);
    auto* element = static_cast<SimpleElement*>(set.createInvalidElement(std::move(attribute)));
    element->set(std::make_unique<Types::Unknown>(bytes.begin(), bytes.size()), false);
    return *element;
}

} // namespace Vellum::Metadata
