#include "Vellum/Metadata/HeaderMetadataMerge.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"
#include "Vellum/Metadata/DarkMetadataSet.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"

#include <array>
#include <map>
#include <utility>
#include <vector>

namespace Vellum::Metadata {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Label = std::array<std::uint8_t, 16>;

// What identifies an item in its set: its label without the version byte, or its tag.
using ItemId = std::pair<bool, Label>;

Bytes valueBytes(const Element& element) {
    DataIO::Memory::MemoryDataSink sink;
    element.serializeValue(sink);
    return Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
}

ItemId itemId(const Element& element) {
    Label id{};
    if (const auto label = MetadataSet::itemLabel(element)) {
        std::copy(label->data(), label->data() + 16, id.begin());
        id[7] = 0;
        return {false, id};
    }
    const auto* unknown =
        dynamic_cast<const MetaMetadata::UnknownAttribute*>(element.metaAttribute().get());
    const std::uint16_t tag = unknown != nullptr
                                  ? unknown->localTag().value()
                                  : element.localTag().value_or(Types::LocalTag()).value();
    id[0] = static_cast<std::uint8_t>(tag >> 8U);
    id[1] = static_cast<std::uint8_t>(tag & 0xFFU);
    return {true, id};
}

// The items of a set that hold a value; the first of repeated ones.
std::map<ItemId, const Element*> items(const MetadataSet& set) {
    std::map<ItemId, const Element*> out;
    for (const Element* element : set.serializationOrder()) {
        if (!element->isEmpty()) {
            out.emplace(itemId(*element), element);
        }
    }
    return out;
}

// The sets with an instance UID, by it; the first of sets sharing one.
std::map<Types::UUID, const MetadataSet*> byIdentifier(const PartitionMetadata& partition) {
    std::map<Types::UUID, const MetadataSet*> out;
    for (const MetadataSet* set : partition.sets()) {
        if (const Types::UUID* uid = set->instanceUID()) {
            out.emplace(*uid, set);
        }
    }
    return out;
}

Element* findItem(MetadataSet& set, const ItemId& id) {
    for (Element* element : set.serializationOrder()) {
        if (!element->isEmpty() && itemId(*element) == id) {
            return element;
        }
    }
    return nullptr;
}

// Applies the item changes between two versions of one set to a set of the target.
std::size_t editItems(MetadataSet& target, const MetadataSet& base, const MetadataSet& edited) {
    const auto before = items(base);
    const auto after = items(edited);
    std::size_t changes = 0;
    for (const auto& [id, element] : after) {
        const Bytes bytes = valueBytes(*element);
        const auto old = before.find(id);
        if (old != before.end() && valueBytes(*old->second) == bytes) {
            continue;
        }
        Element* current = findItem(target, id);
        if (current != nullptr && valueBytes(*current) == bytes) {
            continue;
        }
        Element& into = current != nullptr ? *current : target.elementFor(*element);
        into.readValue(DataIO::Slice(bytes.data(), bytes.size()));
        ++changes;
    }
    for (const auto& [id, element] : before) {
        if (after.count(id) == 0) {
            if (Element* current = findItem(target, id)) {
                target.removeElement(*current);
                ++changes;
            }
        }
    }
    return changes;
}

std::vector<MetadataSet*> targetsOf(const PartitionMetadata& target, const Types::UUID& uid) {
    const auto& found = target.findByInstanceUID(uid);
    return std::vector<MetadataSet*>(found.begin(), found.end());
}

using DarkEntry = std::pair<Bytes, Bytes>; // key, value

DarkEntry darkEntry(const DarkMetadataSet& dark) {
    const Bytes key(dark.key().data(), dark.key().data() + KLV::Key::byteCount);
    const DataIO::Slice* value = dark.value();
    return {key, value != nullptr ? Bytes(value->begin(), value->end()) : Bytes()};
}

std::map<DarkEntry, std::vector<const DarkMetadataSet*>> darkSets(const PartitionMetadata& p) {
    std::map<DarkEntry, std::vector<const DarkMetadataSet*>> out;
    for (auto it = p.darkBegin(); it != p.darkEnd(); ++it) {
        out[darkEntry(**it)].push_back(*it);
    }
    return out;
}

std::size_t editDarkSets(PartitionMetadata& target, const PartitionMetadata& base,
                         const PartitionMetadata& edited) {
    const auto before = darkSets(base);
    const auto after = darkSets(edited);
    auto present = darkSets(target);
    std::size_t changes = 0;
    for (const auto& [entry, sets] : before) {
        const auto kept = after.find(entry);
        const std::size_t keep = kept == after.end() ? 0 : kept->second.size();
        auto& inTarget = present[entry];
        for (std::size_t i = keep; i < sets.size() && !inTarget.empty(); ++i) {
            target.removeDarkMetadataSet(*inTarget.back());
            inTarget.pop_back();
            ++changes;
        }
    }
    for (const auto& [entry, sets] : after) {
        const auto old = before.find(entry);
        const std::size_t had = old == before.end() ? 0 : old->second.size();
        for (std::size_t i = had; i < sets.size(); ++i) {
            const DarkMetadataSet& dark = *sets[i];
            target.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(
                dark.key(), dark.berLength(),
                KLV::Value(entry.second.data(), entry.second.size())));
            ++changes;
        }
    }
    return changes;
}

} // namespace

std::size_t HeaderMetadataMerge::apply(PartitionMetadata& target, const PartitionMetadata& base,
                                       const PartitionMetadata& edited) {
    const auto before = byIdentifier(base);
    const auto after = byIdentifier(edited);
    std::size_t changes = 0;
    for (const auto& [uid, set] : after) {
        const auto old = before.find(uid);
        const std::vector<MetadataSet*> targets = targetsOf(target, uid);
        if (old == before.end() || !(old->second->key() == set->key())) {
            for (MetadataSet* replaced : targets) {
                target.removeSet(*replaced);
            }
            target.copySet(*set);
            ++changes;
            continue;
        }
        for (MetadataSet* into : targets) {
            changes += editItems(*into, *old->second, *set);
        }
    }
    for (const auto& [uid, set] : before) {
        if (after.count(uid) == 0) {
            for (MetadataSet* removed : targetsOf(target, uid)) {
                target.removeSet(*removed);
                ++changes;
            }
        }
    }
    return changes + editDarkSets(target, base, edited);
}

} // namespace Vellum::Metadata
