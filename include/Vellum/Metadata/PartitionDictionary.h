#ifndef VELLUM_METADATA_PARTITIONDICTIONARY_H
#define VELLUM_METADATA_PARTITIONDICTIONARY_H

#include "Vellum/Core/Export.h"
#include "Vellum/DataIO/Slice.h"
#include "Vellum/KLV/Key.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/LocalTag.h"
#include "Vellum/Types/UniversalLabel.h"

#include <cstdint>
#include <map>
#include <vector>

namespace Vellum::DataIO {
class DataSink;
} // namespace Vellum::DataIO

namespace Vellum::MetaMetadata {
class Dictionary;
} // namespace Vellum::MetaMetadata

namespace Vellum::Metadata {

/// A partition's primer pack (local tag to universal label, and back) with the meta-dictionary
/// the partition uses.
///
/// Entries keep the order in which they were read, so a primer read and written unchanged gives
/// back the same bytes; entries added later follow.
class VELLUM_CORE_EXPORT PartitionDictionary {
public:
    /// An empty primer over `dictionary` (shared; never null).
    explicit PartitionDictionary(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary);

    const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary() const noexcept {
        return m_dictionary;
    }

    /// The label of `tag`. With `useDictionary`, a static tag that the primer lacks is also
    /// looked up among the dictionary's static tags. Throws NotFoundInPrimer naming the tag
    /// when neither knows it.
    const Types::UniversalLabel& find(const Types::LocalTag& tag, bool useDictionary) const;
    /// The label of `tag` in the primer, or nullptr.
    const Types::UniversalLabel* lookup(const Types::LocalTag& tag) const noexcept;
    /// The tag of `ul` in the primer (byte 8 compared), or nullptr.
    const Types::LocalTag* lookupTag(const Types::UniversalLabel& ul) const noexcept;
    /// The tag of `ul`; when the primer has none, enters one: the dictionary's static tag if
    /// it has one that is still free, else a new dynamic tag counting down from 0xFFFF. Throws
    /// InvalidFormat when all dynamic tags are taken.
    const Types::LocalTag& findOrGenerate(const Types::UniversalLabel& ul);

    /// Enters `tag` for `ul` unless the primer already has an entry for `tag`.
    void insert(const Types::LocalTag& tag, const Types::UniversalLabel& ul);

    /// The number of entries.
    std::size_t size() const noexcept { return m_entries.size(); }
    /// Entries in primer order.
    const std::vector<std::pair<Types::LocalTag, Types::UniversalLabel>>& entries() const noexcept {
        return m_entries;
    }

    /// Replaces the entries with those of a primer pack value (item count, item size 18,
    /// items). `offset` (of the value) names positions in messages. Throws InvalidLength for a
    /// value whose size disagrees with its count or item size.
    void readPrimerPack(const KLV::Key& key, std::uint8_t berOctets, DataIO::Slice value,
                        std::uint64_t offset);
    /// The number of bytes `serialize` writes.
    std::uint64_t serializedSize() const noexcept;
    /// Writes the primer pack KLV.
    void serialize(DataIO::DataSink& sink) const;

private:
    void add(const Types::LocalTag& tag, const Types::UniversalLabel& ul);

    Templates::SharedPtr<MetaMetadata::Dictionary> m_dictionary;
    KLV::Key m_key;
    std::uint8_t m_berOctets = 4;
    std::vector<std::pair<Types::LocalTag, Types::UniversalLabel>> m_entries;
    std::map<Types::LocalTag, Types::UniversalLabel> m_byTag;
    std::map<Types::UniversalLabel, Types::LocalTag> m_byLabel; // byte 8 zeroed
    std::uint16_t m_nextDynamic = 0xFFFF;
};

} // namespace Vellum::Metadata

#endif
