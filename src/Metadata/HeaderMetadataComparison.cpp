#include "Vellum/Metadata/HeaderMetadataComparison.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"
#include "Vellum/Metadata/CollectionElement.h"
#include "Vellum/Metadata/DarkMetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/ValueText.h"

#include <algorithm>
#include <array>
#include <string>
#include <tuple>

namespace Vellum::Metadata {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Label = std::array<std::uint8_t, 16>;
using Kind = MetadataDifference::Kind;

WString decimal(unsigned value) {
    const std::string text = std::to_string(value);
    return WString(text.begin(), text.end());
}

// One set of a partition with what matches it to a set of the other partition.
struct SetEntry {
    bool withoutUID = false; // sets with an instance UID come first
    Label id{};              // the instance UID, or the key as matched
    unsigned occurrence = 0; // 1 for the first set with this identity, in stored order
    const MetadataSet* set = nullptr;

    auto identity() const { return std::tie(withoutUID, id); }
    auto order() const { return identity(); }
    auto rank() const { return std::tie(withoutUID, id, occurrence); }
};

// Sorts entries by identity (and, among equal ones, by `order`, else in stored order) and
// numbers the entries of each identity.
template <class Entry>
void sortAndNumber(std::vector<Entry>& entries) {
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.order() < b.order(); });
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const bool repeat = i != 0 && entries[i - 1].identity() == entries[i].identity();
        entries[i].occurrence = repeat ? entries[i - 1].occurrence + 1 : 1;
    }
}

std::vector<SetEntry> setEntries(const PartitionMetadata& partition) {
    std::vector<SetEntry> entries;
    entries.reserve(partition.sets().size());
    for (const MetadataSet* set : partition.sets()) {
        SetEntry entry;
        entry.set = set;
        if (const Types::UUID* uid = set->instanceUID()) {
            entry.id = uid->bytes();
        } else {
            entry.withoutUID = true;
            entry.id = KLV::setIdentityKey(set->key()).bytes();
        }
        entries.push_back(entry);
    }
    sortAndNumber(entries);
    return entries;
}

// One item (an element holding a value) of a set.
struct ItemEntry {
    bool byTag = false; // items known by their local tag only come last
    Label id{};         // the label (version byte cleared), or the local tag in bytes 0-1
    Label exact{};      // the label as it is
    unsigned occurrence = 0;
    const Element* element = nullptr;
    const Types::UniversalLabel* ul = nullptr; // as the dictionary or the primer gives it
    Bytes bytes;

    auto identity() const { return std::tie(byTag, id); }
    // Items that share a label (or differ only in its version byte) pair up by their exact
    // labels and then their bytes, not by the order they were stored or made in: a set may
    // hold the same item twice, and an import makes its items in another order.
    auto order() const { return std::tie(byTag, id, exact, bytes); }
    auto rank() const { return std::tie(byTag, id, occurrence); }
};

// The label of a local tag as the reader resolves it: through the primer, or for a static
// tag through the dictionary. nullptr when neither knows it.
const Types::UniversalLabel* resolve(const PartitionDictionary& primer, std::uint16_t tag) {
    const Types::LocalTag localTag(tag);
    if (const Types::UniversalLabel* ul = primer.lookup(localTag)) {
        return ul;
    }
    if (localTag.isStaticLocalTag()) {
        if (const auto* meta = primer.dictionary()->findElementByStaticTag(tag)) {
            return &meta->ul();
        }
    }
    return nullptr;
}

std::vector<ItemEntry> itemEntries(const MetadataSet& set) {
    std::vector<ItemEntry> entries;
    entries.reserve(set.serializationOrder().size());
    for (const Element* element : set.serializationOrder()) {
        if (element->isEmpty()) {
            continue;
        }
        ItemEntry entry;
        entry.element = element;
        const Types::UniversalLabel* ul = nullptr;
        std::uint16_t tag = 0;
        if (const MetaMetadata::MetaElement* meta = element->metaElement()) {
            ul = &meta->ul();
        } else if (const auto* unknown = dynamic_cast<const MetaMetadata::UnknownAttribute*>(
                       element->metaAttribute().get())) {
            ul = unknown->universalLabel();
            tag = unknown->localTag().value();
        } else if (element->localTag()) {
            tag = element->localTag()->value();
        }
        if (ul == nullptr) {
            ul = resolve(set.partition().partitionDictionary(), tag);
        }
        entry.ul = ul;
        if (ul != nullptr) {
            entry.id = ul->bytes();
            entry.exact = entry.id;
            entry.id[7] = 0;
        } else {
            entry.byTag = true;
            entry.id[0] = static_cast<std::uint8_t>(tag >> 8U);
            entry.id[1] = static_cast<std::uint8_t>(tag & 0xFFU);
        }
        DataIO::Memory::MemoryDataSink sink;
        element->serializeValue(sink);
        entry.bytes = sink.release();
        entries.push_back(std::move(entry));
    }
    sortAndNumber(entries);
    return entries;
}

WString setName(const MetadataSet& set) {
    if (const MetaMetadata::MetaMetadataSet* definition = set.definition()) {
        const WString* tag = definition->property(u"XMLTagName");
        return tag == nullptr || tag->empty() ? definition->name() : *tag;
    }
    return set.key().toString();
}

WString setIdentifier(const SetEntry& entry) {
    if (entry.withoutUID) {
        return entry.set->key().toString() + u" #" + decimal(entry.occurrence);
    }
    WString text = entry.set->instanceUID()->toString();
    if (entry.occurrence > 1) {
        text += u" #" + decimal(entry.occurrence);
    }
    return text;
}

WString elementName(const ItemEntry& item) {
    if (const MetaMetadata::MetaElement* meta = item.element->metaElement()) {
        return meta->name();
    }
    if (item.ul != nullptr) {
        return item.ul->toString();
    }
    return u"tag " +
           Types::LocalTag(static_cast<std::uint16_t>(item.id[0] << 8U | item.id[1])).toString();
}

// The value's text form; hex when the element holds no value object of its own.
WString valueText(const ItemEntry& item) {
    const Types::BaseType* value = nullptr;
    if (const auto* simple = dynamic_cast<const SimpleElement*>(item.element)) {
        value = simple->value();
    } else if (const auto* reference = dynamic_cast<const ReferenceElement*>(item.element)) {
        value = reference->value();
    } else if (const auto* collection = dynamic_cast<const CollectionElement*>(item.element)) {
        value = collection->collection();
    }
    return value != nullptr ? Types::ValueText::format(*value)
                            : Types::ValueText::hex(item.bytes.data(), item.bytes.size());
}

// Walks two sorted lists together: `removed` for entries only `before` has, `added` for
// entries only `after` has, `matched` for pairs with equal rank.
template <class Entry, class Removed, class Added, class Matched>
void mergeWalk(const std::vector<Entry>& before, const std::vector<Entry>& after, Removed removed,
               Added added, Matched matched) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < before.size() || j < after.size()) {
        if (j == after.size() || (i < before.size() && before[i].rank() < after[j].rank())) {
            removed(before[i++]);
        } else if (i == before.size() || after[j].rank() < before[i].rank()) {
            added(after[j++]);
        } else {
            matched(before[i++], after[j++]);
        }
    }
}

class Comparer {
public:
    explicit Comparer(std::vector<MetadataDifference>& out)
        : m_out(out) {}

    void compareSets(const PartitionMetadata& before, const PartitionMetadata& after) {
        mergeWalk(
            setEntries(before), setEntries(after),
            [&](const SetEntry& set) { add(Kind::SetRemoved, set); },
            [&](const SetEntry& set) { add(Kind::SetAdded, set); },
            [&](const SetEntry& a, const SetEntry& b) { compareSet(a, b); });
    }

    void compareDarkSets(const PartitionMetadata& before, const PartitionMetadata& after) {
        mergeWalk(
            darkEntries(before), darkEntries(after),
            [&](const DarkEntry& dark) { addDark(Kind::DarkSetRemoved, dark); },
            [&](const DarkEntry& dark) { addDark(Kind::DarkSetAdded, dark); },
            [](const DarkEntry&, const DarkEntry&) {});
    }

private:
    struct DarkEntry {
        Label key{};
        DataIO::Slice value;
        unsigned occurrence = 0;

        auto rank() const { return std::make_tuple(key, BytesRank{value}, occurrence); }
    };

    // Orders value bytes lexicographically.
    struct BytesRank {
        DataIO::Slice bytes;
        friend bool operator<(const BytesRank& a, const BytesRank& b) {
            return std::lexicographical_compare(a.bytes.begin(), a.bytes.end(), b.bytes.begin(),
                                                b.bytes.end());
        }
        friend bool operator==(const BytesRank& a, const BytesRank& b) {
            return std::equal(a.bytes.begin(), a.bytes.end(), b.bytes.begin(), b.bytes.end());
        }
    };

    static std::vector<DarkEntry> darkEntries(const PartitionMetadata& partition) {
        std::vector<DarkEntry> entries;
        entries.reserve(partition.darkCount());
        for (auto it = partition.darkBegin(); it != partition.darkEnd(); ++it) {
            entries.push_back(DarkEntry{(*it)->key().bytes(), *(*it)->value(), 0});
        }
        std::sort(entries.begin(), entries.end(), [](const DarkEntry& a, const DarkEntry& b) {
            return std::make_tuple(a.key, BytesRank{a.value}) <
                   std::make_tuple(b.key, BytesRank{b.value});
        });
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const bool repeat = i != 0 && entries[i - 1].key == entries[i].key &&
                                BytesRank{entries[i - 1].value} == BytesRank{entries[i].value};
            entries[i].occurrence = repeat ? entries[i - 1].occurrence + 1 : 1;
        }
        return entries;
    }

    MetadataDifference& add(Kind kind, const SetEntry& set) {
        MetadataDifference& difference = m_out.emplace_back();
        difference.kind = kind;
        difference.setName = setName(*set.set);
        difference.setIdentifier = setIdentifier(set);
        return difference;
    }

    void addDark(Kind kind, const DarkEntry& dark) {
        MetadataDifference& difference = m_out.emplace_back();
        difference.kind = kind;
        difference.setName = KLV::Key(dark.key).toString();
        WString& value = kind == Kind::DarkSetAdded ? difference.newValue : difference.oldValue;
        value = Types::ValueText::hex(dark.value.begin(), dark.value.size());
    }

    void compareSet(const SetEntry& a, const SetEntry& b) {
        if (a.set->key() != b.set->key()) {
            MetadataDifference& difference = add(Kind::SetKeyChanged, a);
            difference.oldValue = a.set->key().toString();
            difference.newValue = b.set->key().toString();
        }
        mergeWalk(
            itemEntries(*a.set), itemEntries(*b.set),
            [&](const ItemEntry& item) {
                addItem(Kind::ItemRemoved, a, item).oldValue = valueText(item);
            },
            [&](const ItemEntry& item) {
                addItem(Kind::ItemAdded, a, item).newValue = valueText(item);
            },
            [&](const ItemEntry& x, const ItemEntry& y) {
                if (x.bytes == y.bytes) {
                    return;
                }
                MetadataDifference& difference = addItem(Kind::ItemChanged, a, x);
                difference.oldValue = valueText(x);
                difference.newValue = valueText(y);
                if (difference.oldValue == difference.newValue) {
                    // The texts hide what differs (padding after a NUL, say): show the bytes.
                    difference.oldValue = Types::ValueText::hex(x.bytes.data(), x.bytes.size());
                    difference.newValue = Types::ValueText::hex(y.bytes.data(), y.bytes.size());
                }
            });
    }

    MetadataDifference& addItem(Kind kind, const SetEntry& set, const ItemEntry& item) {
        MetadataDifference& difference = add(kind, set);
        difference.elementName = elementName(item);
        return difference;
    }

    std::vector<MetadataDifference>& m_out;
};

} // namespace

std::vector<MetadataDifference> HeaderMetadataComparison::compare(const PartitionMetadata& before,
                                                                  const PartitionMetadata& after) {
    std::vector<MetadataDifference> differences;
    Comparer comparer(differences);
    comparer.compareSets(before, after);
    comparer.compareDarkSets(before, after);
    return differences;
}

} // namespace Vellum::Metadata
