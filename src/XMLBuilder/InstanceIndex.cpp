#include "XMLBuilder/InstanceIndex.h"

#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"

#include <algorithm>
#include <cstring>

namespace Vellum::XMLBuilder {
namespace {

std::uint64_t hash(const std::array<std::uint8_t, Types::UUID::byteCount>& key) noexcept {
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    std::memcpy(&high, key.data(), sizeof high);
    std::memcpy(&low, key.data() + sizeof high, sizeof low);
    std::uint64_t mixed = (high ^ (low * 0x9E3779B97F4A7C15ULL)) * 0xBF58476D1CE4E5B9ULL;
    return mixed ^ (mixed >> 31U);
}

} // namespace

std::size_t InstanceIndex::home(const Key& key) const noexcept {
    // The hash scaled to the table's size (which need not be a power of two).
    return static_cast<std::size_t>(((hash(key) >> 32U) * m_slots.size()) >> 32U);
}

std::size_t InstanceIndex::slotFor(const Key& key) const noexcept {
    std::size_t at = home(key);
    while (m_slots[at].set != nullptr && m_slots[at].key != key) {
        at = at + 1 == m_slots.size() ? 0 : at + 1;
    }
    return at;
}

void InstanceIndex::insert(const Key& key, const Metadata::MetadataSet* set) {
    const std::size_t at = slotFor(key);
    Slot& slot = m_slots[at];
    if (slot.set == nullptr) {
        slot.key = key;
        slot.set = set;
        return;
    }
    auto& shared = m_shared[at];
    if (shared.empty()) {
        shared.push_back(slot.set);
    }
    shared.push_back(set);
}

InstanceIndex::InstanceIndex(const Metadata::PartitionMetadata& partition) {
    const auto& sets = partition.sets();
    m_slots.resize(sets.size() + sets.size() / 2 + 16);
    // A set's identifier is a few pointers away from it, and a large table is rarely cached:
    // the sets are taken in blocks, their identifiers fetched in the order the sets are
    // stored (and mostly lie), then put in the table, each slot fetched a few sets ahead.
    constexpr std::size_t block = 1024;
    constexpr std::size_t ahead = 16;
    std::vector<std::pair<const Metadata::MetadataSet*, const Types::UUID*>> pending;
    pending.reserve(block);
    for (std::size_t first = 0; first < sets.size(); first += block) {
        pending.clear();
        const std::size_t last = std::min(sets.size(), first + block);
        for (std::size_t i = first; i < last; ++i) {
            if (i + ahead < last) {
                __builtin_prefetch(sets[i + ahead]);
            }
            if (const Types::UUID* uid = sets[i]->instanceUID()) {
                pending.emplace_back(sets[i], uid);
                __builtin_prefetch(&m_slots[home(uid->bytes())], 1);
            }
        }
        for (const auto& [set, uid] : pending) {
            insert(uid->bytes(), set);
        }
    }
}

InstanceIndex::Sets InstanceIndex::find(const Types::UUID& uuid) const noexcept {
    const std::size_t at = slotFor(uuid.bytes());
    const Slot& slot = m_slots[at];
    if (slot.set == nullptr) {
        return {};
    }
    if (!m_shared.empty()) {
        if (const auto it = m_shared.find(at); it != m_shared.end()) {
            return {it->second.data(), it->second.size()};
        }
    }
    return {&slot.set, 1};
}

} // namespace Vellum::XMLBuilder
