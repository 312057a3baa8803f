#ifndef VELLUM_SRC_XMLBUILDER_SETRECORD_H
#define VELLUM_SRC_XMLBUILDER_SETRECORD_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vellum::Metadata {
class MetadataSet;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

/// The sets already written in one pass of an export, so that each is written once: an
/// open-addressing table of set addresses, grown as it fills.
class SetRecord {
public:
    /// Room for `expected` sets before it grows.
    explicit SetRecord(std::size_t expected);

    /// Forgets every set, keeping the room.
    void clear() noexcept;
    /// Adds `set`; false when it was there.
    bool insert(const Metadata::MetadataSet* set);
    bool contains(const Metadata::MetadataSet* set) const noexcept;
    /// Asks the processor to fetch where `set` is looked for, ahead of `insert`.
    void prefetch(const Metadata::MetadataSet* set) const noexcept {
        __builtin_prefetch(&m_slots[slotOf(set)]);
    }
    std::size_t size() const noexcept { return m_size; }

private:
    std::size_t slotOf(const Metadata::MetadataSet* set) const noexcept {
        const auto address = reinterpret_cast<std::uintptr_t>(set);
        return static_cast<std::size_t>((address >> 4U) * 0x9E3779B97F4A7C15ULL >> 17U) &
               (m_slots.size() - 1);
    }
    std::size_t find(const Metadata::MetadataSet* set) const noexcept;
    void grow();

    std::vector<const Metadata::MetadataSet*> m_slots; ///< a power of two of them
    std::size_t m_size = 0;
};

} // namespace Vellum::XMLBuilder

#endif
