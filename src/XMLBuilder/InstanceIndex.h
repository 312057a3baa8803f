#ifndef VELLUM_SRC_XMLBUILDER_INSTANCEINDEX_H
#define VELLUM_SRC_XMLBUILDER_INSTANCEINDEX_H

#include "Vellum/Types/UUID.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Vellum::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::XMLBuilder {

/// The sets of a partition by instance identifier, in stored order, as
/// PartitionMetadata::findByInstanceUID gives them, in an open-addressing table made once per
/// export (the export looks up every reference, twice). The partition must not change while
/// the index is used.
class InstanceIndex {
public:
    /// The sets with one identifier.
    class Sets {
    public:
        Sets() = default;
        Sets(const Metadata::MetadataSet* const* first, std::size_t count) noexcept
            : m_first(first)
            , m_count(count) {}
        const Metadata::MetadataSet* const* begin() const noexcept { return m_first; }
        const Metadata::MetadataSet* const* end() const noexcept { return m_first + m_count; }
        std::size_t size() const noexcept { return m_count; }
        bool empty() const noexcept { return m_count == 0; }
        const Metadata::MetadataSet* front() const noexcept { return *m_first; }

    private:
        const Metadata::MetadataSet* const* m_first = nullptr;
        std::size_t m_count = 0;
    };

    explicit InstanceIndex(const Metadata::PartitionMetadata& partition);

    /// The sets whose instance identifier is `uuid` (none when no set has it).
    Sets find(const Types::UUID& uuid) const noexcept;
    /// Asks the processor to fetch where `uuid` is looked for, ahead of `find`.
    void prefetch(const Types::UUID& uuid) const noexcept {
        __builtin_prefetch(&m_slots[home(uuid.bytes())]);
    }

private:
    using Key = std::array<std::uint8_t, Types::UUID::byteCount>;
    struct Slot {
        Key key{};
        const Metadata::MetadataSet* set = nullptr; ///< the first set with the key; null if free
    };

    /// The first slot to look at for `key`.
    std::size_t home(const Key& key) const noexcept;
    std::size_t slotFor(const Key& key) const noexcept;
    void insert(const Key& key, const Metadata::MetadataSet* set);

    std::vector<Slot> m_slots; ///< at most two in three in use
    /// Every set of an identifier that several sets share, by the index of its slot.
    std::unordered_map<std::size_t, std::vector<const Metadata::MetadataSet*>> m_shared;
};

} // namespace Vellum::XMLBuilder

#endif
