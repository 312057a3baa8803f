#include "Vellum/Metadata/PartitionDictionary.h"

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/DataIO/Memory/MemoryDataSource.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/InvalidLength.h"
#include "Vellum/Exceptions/NotFoundInPrimer.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/BERLength.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Utils/StringConversion.h"

#include <algorithm>
#include <string>
#include <utility>

namespace Vellum::Metadata {
namespace {

constexpr std::uint32_t entrySize = 18;

const KLV::Key primerKey(KLV::Key::Bytes{0x06, 0x0E, 0x2B, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0D, 0x01,
                                         0x02, 0x01, 0x01, 0x05, 0x01, 0x00});

// The label with its registry version byte cleared, for look-ups that ignore it.
Types::UniversalLabel withoutVersion(const Types::UniversalLabel& ul) {
    auto bytes = ul.bytes();
    bytes[7] = 0;
    return Types::UniversalLabel(bytes);
}

} // namespace

PartitionDictionary::PartitionDictionary(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary)
    : m_dictionary(std::move(dictionary))
    , m_key(primerKey) {
    if (!m_dictionary) {
        VELLUM_THROW(InvalidFormat, "a partition needs a dictionary");
    }
}

const Types::UniversalLabel*
PartitionDictionary::lookup(const Types::LocalTag& tag) const noexcept {
    const auto it = m_byTag.find(tag);
    return it == m_byTag.end() ? nullptr : &it->second;
}

const Types::UniversalLabel& PartitionDictionary::find(const Types::LocalTag& tag,
                                                       bool useDictionary) const {
    if (const auto* ul = lookup(tag)) {
        return *ul;
    }
    if (useDictionary && tag.isStaticLocalTag()) {
        if (const auto* meta = m_dictionary->findElementByStaticTag(tag.value())) {
            return meta->ul();
        }
    }
    VELLUM_THROW(NotFoundInPrimer,
                 "local tag " + Utils::wstringToString(tag.toString()) + " is not in the primer");
}

const Types::LocalTag*
PartitionDictionary::lookupTag(const Types::UniversalLabel& ul) const noexcept {
    const auto it = m_byLabel.find(withoutVersion(ul));
    return it == m_byLabel.end() ? nullptr : &it->second;
}

const Types::LocalTag& PartitionDictionary::findOrGenerate(const Types::UniversalLabel& ul) {
    if (const auto* tag = lookupTag(ul)) {
        return *tag;
    }
    const auto* meta = m_dictionary->findElement(ul);
    if (meta != nullptr && meta->staticLocalTag() && m_byTag.count(*meta->staticLocalTag()) == 0) {
        add(*meta->staticLocalTag(), ul);
        return *lookupTag(ul);
    }
    while (m_nextDynamic >= 0x8000 && m_byTag.count(Types::LocalTag(m_nextDynamic)) != 0) {
        --m_nextDynamic;
    }
    if (m_nextDynamic < 0x8000) {
        VELLUM_THROW(InvalidFormat, "the primer has no free dynamic local tag left for " +
                                        Utils::wstringToString(ul.toString()));
    }
    add(Types::LocalTag(m_nextDynamic--), ul);
    return *lookupTag(ul);
}

void PartitionDictionary::insert(const Types::LocalTag& tag, const Types::UniversalLabel& ul) {
    if (m_byTag.count(tag) == 0) {
        add(tag, ul);
    }
}

void PartitionDictionary::add(const Types::LocalTag& tag, const Types::UniversalLabel& ul) {
    m_entries.emplace_back(tag, ul);
    m_byTag.emplace(tag, ul);
    m_byLabel.emplace(withoutVersion(ul), tag);
}

void PartitionDictionary::readPrimerPack(const KLV::Key& key, std::uint8_t berOctets,
                                         DataIO::Slice value, std::uint64_t offset) {
    DataIO::Memory::MemoryDataSource source(value, offset);
    source.require(8, "primer pack header");
    const std::uint32_t count = source.readUInt32();
    const std::uint32_t itemSize = source.readUInt32();
    if (itemSize != entrySize) {
        VELLUM_THROW(InvalidLength, "primer pack entries have 18 bytes, the primer at offset " +
                                        std::to_string(offset) + " says " +
                                        std::to_string(itemSize));
    }
    if (count > source.remaining() / entrySize ||
        source.remaining() != count * std::uint64_t{entrySize}) {
        VELLUM_THROW(InvalidLength, "the primer pack at offset " + std::to_string(offset) +
                                        " claims " + std::to_string(count) +
                                        " entries of 18 bytes, but holds " +
                                        std::to_string(source.remaining()) + " bytes of entries");
    }
    m_key = key;
    m_berOctets = berOctets;
    m_entries.clear();
    m_byTag.clear();
    m_byLabel.clear();
    m_entries.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const Types::LocalTag tag(source.readUInt16());
        const auto bytes = source.take(16, "primer entry");
        add(tag, Types::UniversalLabel(bytes.begin(), 16));
    }
}

std::uint64_t PartitionDictionary::serializedSize() const noexcept {
    const std::uint64_t value = 8 + m_entries.size() * std::uint64_t{entrySize};
    return KLV::Key::byteCount + std::max(m_berOctets, KLV::BERLength::minimalOctets(value)) +
           value;
}

void PartitionDictionary::serialize(DataIO::DataSink& sink) const {
    const std::uint64_t value = 8 + m_entries.size() * std::uint64_t{entrySize};
    m_key.serialize(sink);
    KLV::BERLength(value, std::max(m_berOctets, KLV::BERLength::minimalOctets(value))).write(sink);
    sink.writeUInt32(static_cast<std::uint32_t>(m_entries.size()));
    sink.writeUInt32(entrySize);
    for (const auto& [tag, ul] : m_entries) {
        sink.writeUInt16(tag.value());
        ul.serialize(sink);
    }
}

} // namespace Vellum::Metadata
