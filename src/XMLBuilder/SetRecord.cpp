#include "XMLBuilder/SetRecord.h"

#include <algorithm>

namespace Vellum::XMLBuilder {
namespace {

std::size_t capacityFor(std::size_t count) {
    std::size_t capacity = 16;
    while (capacity < 2 * count) {
        capacity *= 2;
    }
    return capacity;
}

} // namespace

SetRecord::SetRecord(std::size_t expected)
    : m_slots(capacityFor(expected), nullptr) {}

std::size_t SetRecord::find(const Metadata::MetadataSet* set) const noexcept {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t at = slotOf(set);
    while (m_slots[at] != nullptr && m_slots[at] != set) {
        at = (at + 1) & mask;
    }
    return at;
}

void SetRecord::clear() noexcept {
    std::fill(m_slots.begin(), m_slots.end(), nullptr);
    m_size = 0;
}

bool SetRecord::insert(const Metadata::MetadataSet* set) {
    std::size_t at = find(set);
    if (m_slots[at] == set) {
        return false;
    }
    if (2 * (m_size + 1) > m_slots.size()) {
        grow();
        at = find(set);
    }
    m_slots[at] = set;
    ++m_size;
    return true;
}

bool SetRecord::contains(const Metadata::MetadataSet* set) const noexcept {
    return m_slots[find(set)] == set;
}

void SetRecord::grow() {
    std::vector<const Metadata::MetadataSet*> old(m_slots.size() * 2, nullptr);
    old.swap(m_slots);
    for (const Metadata::MetadataSet* set : old) {
        if (set != nullptr) {
            m_slots[find(set)] = set;
        }
    }
}

} // namespace Vellum::XMLBuilder
