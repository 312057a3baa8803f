#include "Vellum/Metadata/PartitionMetadata.h"

#include "Metadata/HeaderMetadataReader.h"
#include "Metadata/ReferenceWalker.h"

#include "Vellum/DataIO/DataSink.h"
#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/BERLength.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/MXF/MXFFile.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"
#include "Vellum/Metadata/DarkParsedGroup.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Metadata/Structural/StructuralMetadataKeys.h"
#include "Vellum/Types/Factories/UID.h"

#include <algorithm>
#include <type_traits>
#include <unordered_set>
#include <utility>
#include <variant>

namespace Vellum::Metadata {

namespace {

/// Whether a stored-layout entry is `item` (a set or a dark metadata set).
template <typename Entry, typename Item>
bool holds(const Entry& entry, const Item* item) noexcept {
    const auto* held = std::get_if<Item*>(&entry);
    return held != nullptr && *held == item;
}

} // namespace

PartitionMetadata::PartitionMetadata(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary)
    : m_primer(std::move(dictionary)) {}

PartitionMetadata::~PartitionMetadata() = default;

std::unique_ptr<PartitionMetadata>
PartitionMetadata::read(DataIO::Slice bytes, std::uint64_t offset,
                        Templates::SharedPtr<MetaMetadata::Dictionary> dictionary) {
    auto partition = std::make_unique<PartitionMetadata>(std::move(dictionary));
    HeaderMetadataReader(*partition).read(bytes, offset);
    return partition;
}

std::unique_ptr<PartitionMetadata>
PartitionMetadata::readFile(const std::string& path, const std::string& which,
                            Templates::SharedPtr<MetaMetadata::Dictionary> dictionary) {
    DataIO::File::FileDataSource source(path);
    const MXF::MXFFile file(source);
    const auto metadata = file.readHeaderMetadata(file.choosePartition(which));
    return read({metadata.bytes.data(), metadata.bytes.size()}, metadata.offset,
                std::move(dictionary));
}

std::unique_ptr<PartitionMetadata> PartitionMetadata::readHeaderMetadataFile(
    const std::string& path, Templates::SharedPtr<MetaMetadata::Dictionary> dictionary) {
    DataIO::File::FileDataSource source(path);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(source.size()));
    source.read(bytes.data(), bytes.size());
    return read({bytes.data(), bytes.size()}, 0, std::move(dictionary));
}

MetadataSet* PartitionMetadata::adoptSet(std::unique_ptr<MetadataSet> set) {
    MetadataSet* raw = set.get();
    m_sets.push_back(std::move(set));
    m_setList.push_back(raw);
    m_byKey[KLV::setIdentityKey(raw->key())].push_back(raw);
    m_layout.emplace_back(raw);
    m_uidIndexValid = false;
    return raw;
}

void PartitionMetadata::adoptDark(std::unique_ptr<DarkMetadataSet> dark) {
    m_darkList.push_back(dark.get());
    m_layout.emplace_back(dark.get());
    m_darkSets.push_back(std::move(dark));
}

void PartitionMetadata::addFill(DataIO::Slice bytes) {
    m_layout.emplace_back(Fill(bytes.begin(), bytes.end()));
}

PartitionMetadata::SetList PartitionMetadata::find(const KLV::Key& key) const {
    SetList result;
    const auto found = m_byKey.find(KLV::setIdentityKey(key));
    if (found != m_byKey.end()) {
        result = found->second;
    }
    return result;
}

const PartitionMetadata::SetList&
PartitionMetadata::findByInstanceUID(const Types::UUID& uuid) const {
    if (!m_uidIndexValid) {
        m_byUID.clear();
        for (MetadataSet* set : m_setList) {
            if (const Types::UUID* uid = set->instanceUID()) {
                m_byUID[*uid].push_back(set);
            }
        }
        m_uidIndexValid = true;
    }
    static const SetList none;
    const auto it = m_byUID.find(uuid);
    return it == m_byUID.end() ? none : it->second;
}

MetadataSet* PartitionMetadata::createMetadataSet(const KLV::Key& key) {
    const MetaMetadata::MetaMetadataSet* definition =
        m_primer.dictionary()->findSet(KLV::withTwoByteItemLengths(key));
    if (definition == nullptr) {
        VELLUM_THROW(InvalidFormat, "the dictionary has no local set with key " + key.toUtf8());
    }
    std::unique_ptr<MetadataSet> set(new MetadataSet(*this, key, definition));
    set->createDefinedElements();
    if (auto* uid = dynamic_cast<SimpleElement*>(set->m_instanceUID)) {
        uid->set(std::make_unique<Types::UUID>(
            Types::Factories::UID::generateUUID(Types::Factories::UID::TimeBased)));
    }
    return adoptSet(std::move(set));
}

MetadataSet* PartitionMetadata::createDarkParsedGroup(const KLV::Key& key, std::uint8_t berOctets) {
    if (!KLV::isLocalSet(key)) {
        VELLUM_THROW(InvalidFormat, "the key " + key.toUtf8() + " is not the key of a local set");
    }
    if (berOctets < 1 || berOctets > KLV::BERLength::maxOctets) {
        VELLUM_THROW(InvalidFormat,
                     "a BER length has 1 to 9 octets, not " + std::to_string(unsigned{berOctets}));
    }
    std::unique_ptr<MetadataSet> set(new DarkParsedGroup(*this, key));
    set->setBerLength(berOctets);
    return adoptSet(std::move(set));
}

MetadataSet* PartitionMetadata::copySet(const MetadataSet& source) {
    const MetaMetadata::MetaMetadataSet* definition =
        m_primer.dictionary()->findSet(KLV::withTwoByteItemLengths(source.key()));
    std::unique_ptr<MetadataSet> set(definition != nullptr
                                         ? new MetadataSet(*this, source.key(), definition)
                                         : new DarkParsedGroup(*this, source.key()));
    set->createDefinedElements();
    set->setBerLength(source.berLength());
    for (const Element* item : source.serializationOrder()) {
        if (item->isEmpty()) {
            continue;
        }
        DataIO::Memory::MemoryDataSink bytes;
        item->serializeValue(bytes);
        Element& element = set->elementFor(*item);
        element.readValue(DataIO::Slice(bytes.rawBuffer(), bytes.serializedSize()));
        element.setLengthOctets(item->lengthOctets());
        set->markStored(element);
    }
    return adoptSet(std::move(set));
}

void PartitionMetadata::removeSet(const MetadataSet& set) {
    m_setList.erase(std::remove(m_setList.begin(), m_setList.end(), &set), m_setList.end());
    if (const auto found = m_byKey.find(KLV::setIdentityKey(set.key())); found != m_byKey.end()) {
        SetList& sameKey = found->second;
        sameKey.erase(std::remove(sameKey.begin(), sameKey.end(), &set), sameKey.end());
        if (sameKey.empty()) {
            m_byKey.erase(found);
        }
    }
    m_layout.erase(std::remove_if(m_layout.begin(), m_layout.end(),
                                  [&set](const LayoutEntry& e) { return holds(e, &set); }),
                   m_layout.end());
    m_uidIndexValid = false;
    m_sets.erase(std::remove_if(m_sets.begin(), m_sets.end(),
                                [&set](const auto& owned) { return owned.get() == &set; }),
                 m_sets.end());
}

void PartitionMetadata::removeDarkMetadataSet(const DarkMetadataSet& dark) {
    m_darkList.remove_if([&dark](const DarkMetadataSet* d) { return d == &dark; });
    m_layout.erase(std::remove_if(m_layout.begin(), m_layout.end(),
                                  [&dark](const LayoutEntry& e) { return holds(e, &dark); }),
                   m_layout.end());
    m_darkSets.erase(std::remove_if(m_darkSets.begin(), m_darkSets.end(),
                                    [&dark](const auto& owned) { return owned.get() == &dark; }),
                     m_darkSets.end());
}

void PartitionMetadata::dropTrailingFill() {
    while (!m_layout.empty() && std::holds_alternative<Fill>(m_layout.back())) {
        m_layout.pop_back();
    }
}

void PartitionMetadata::addDarkMetadataSet(Templates::auto_ptr<DarkMetadataSet> dark) {
    if (!dark) {
        VELLUM_THROW(InvalidFormat, "cannot add a null dark metadata set");
    }
    adoptDark(std::move(dark));
}

unsigned PartitionMetadata::calculateSerializationOrder(std::vector<const MetadataSet*>& order,
                                                        bool referencedFirst,
                                                        bool followWeak) const {
    order.clear();
    order.reserve(m_setList.size());
    std::unordered_set<const MetadataSet*> reached;
    if (referencedFirst) {
        const SetList prefaces = find(Structural::StructuralMetadataKeys::preface());
        if (!prefaces.empty()) {
            detail::ReferenceWalker walker(*this, followWeak);
            walker.walk(*prefaces.front(), [&](const MetadataSet& set) {
                if (reached.insert(&set).second) {
                    order.push_back(&set);
                    return true;
                }
                return false;
            });
        }
    }
    for (const MetadataSet* set : m_setList) {
        if (reached.count(set) == 0) {
            order.push_back(set);
        }
    }
    return static_cast<unsigned>(m_setList.size() - reached.size());
}

void PartitionMetadata::assignLocalTags() {
    for (MetadataSet* set : m_setList) {
        for (Element* element : set->serializationOrder()) {
            if (element->isEmpty() || element->localTag()) {
                continue;
            }
            if (const MetaMetadata::MetaElement* meta = element->metaElement()) {
                element->setLocalTag(m_primer.findOrGenerate(meta->ul()));
            } else if (const auto* unknown = dynamic_cast<const MetaMetadata::UnknownAttribute*>(
                           element->metaAttribute().get())) {
                element->setLocalTag(unknown->localTag());
                if (const Types::UniversalLabel* ul = unknown->universalLabel()) {
                    m_primer.insert(unknown->localTag(), *ul);
                }
            }
        }
    }
}

std::uint64_t PartitionMetadata::serializedSize() {
    assignLocalTags();
    std::uint64_t total = m_primer.serializedSize();
    for (const LayoutEntry& entry : m_layout) {
        total += std::visit(
            [](const auto& item) -> std::uint64_t {
                if constexpr (std::is_same_v<decltype(item), const Fill&>) {
                    return item.size();
                } else {
                    return item->serializedSize();
                }
            },
            entry);
    }
    return total;
}

void PartitionMetadata::serialize(DataIO::DataSink& sink) {
    assignLocalTags();
    m_primer.serialize(sink);
    for (const LayoutEntry& entry : m_layout) {
        std::visit(
            [&sink](const auto& item) {
                if constexpr (std::is_same_v<decltype(item), const Fill&>) {
                    sink.write(item.data(), item.size());
                } else {
                    item->serialize(sink);
                }
            },
            entry);
    }
}

} // namespace Vellum::Metadata
