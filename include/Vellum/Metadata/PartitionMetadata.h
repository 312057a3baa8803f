#ifndef VELLUM_METADATA_PARTITIONMETADATA_H
#define VELLUM_METADATA_PARTITIONMETADATA_H

#include "Vellum/Core/Export.h"
#include "Vellum/DataIO/Slice.h"
#include "Vellum/KLV/Key.h"
#include "Vellum/Metadata/DarkMetadataSet.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionDictionary.h"
#include "Vellum/Templates/Templates.h"

#include <list>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace Vellum::DataIO {
class DataSink;
} // namespace Vellum::DataIO

namespace Vellum::Metadata {

/// The header metadata of one partition: its primer, its sets and its dark metadata sets,
/// all owned here.
///
/// The partition keeps the order in which its sets, dark sets and KLV fill were stored, so
/// that header metadata read and written unchanged gives back the same bytes; sets and dark
/// sets added later are written after them, in the order they were added.
class VELLUM_CORE_EXPORT PartitionMetadata {
public:
    using DarkList = std::list<DarkMetadataSet*>;
    using SetList = std::vector<MetadataSet*>;

    /// An empty partition whose sets the dictionary describes (shared; never null).
    explicit PartitionMetadata(Templates::SharedPtr<MetaMetadata::Dictionary> dictionary);
    PartitionMetadata(const PartitionMetadata&) = delete;
    PartitionMetadata& operator=(const PartitionMetadata&) = delete;
    ~PartitionMetadata();

    /// Reads header metadata (a primer pack, then sets, dark sets and fill) from `bytes`;
    /// `offset` is the absolute position of the first byte, for messages. Throws
    /// InvalidFormat/InvalidLength naming the offset of what is malformed.
    static std::unique_ptr<PartitionMetadata>
    read(DataIO::Slice bytes, std::uint64_t offset,
         Templates::SharedPtr<MetaMetadata::Dictionary> dictionary);
    /// Reads the header metadata of a partition of an MXF file: `which` is "header", "footer"
    /// or a partition index (see MXF::MXFFile::choosePartition). Throws IOError when the file
    /// cannot be read, and as `read` and MXF::MXFFile do.
    static std::unique_ptr<PartitionMetadata>
    readFile(const std::string& path, const std::string& which,
             Templates::SharedPtr<MetaMetadata::Dictionary> dictionary);
    /// Reads a file that holds header metadata alone, from the primer pack on, as `serialize`
    /// writes it. Throws IOError when the file cannot be read, and as `read` does (offsets
    /// are file offsets).
    static std::unique_ptr<PartitionMetadata>
    readHeaderMetadataFile(const std::string& path,
                           Templates::SharedPtr<MetaMetadata::Dictionary> dictionary);

    PartitionDictionary& partitionDictionary() noexcept { return m_primer; }
    const PartitionDictionary& partitionDictionary() const noexcept { return m_primer; }

    /// Every set, in stored order, then those made later.
    const SetList& sets() const noexcept { return m_setList; }
    /// The sets with this key, in stored order (the registry version byte and the item-length
    /// coding of the key are not compared).
    SetList find(const KLV::Key& key) const;
    /// The sets whose instance identifier is `uuid`, in stored order.
    const SetList& findByInstanceUID(const Types::UUID& uuid) const;

    /// A new local set that the dictionary does not describe (a DarkParsedGroup), owned by
    /// the partition, without elements, its length written in `berOctets` octets (or more if
    /// its items need them). Throws InvalidFormat when `key` is not a local set key or
    /// `berOctets` is not 1 to 9.
    MetadataSet* createDarkParsedGroup(const KLV::Key& key, std::uint8_t berOctets);

    /// A copy of `source` (a set of any partition over the same dictionary), owned by this
    /// partition: the same key, length octet count and items (same labels, same bytes); local
    /// tags come from this partition's primer.
    MetadataSet* copySet(const MetadataSet& source);

    /// Removes `set`, which must belong to this partition, and destroys it. References to it
    /// stay as they are.
    void removeSet(const MetadataSet& set);

    /// Removes `dark`, which must belong to this partition, and destroys it.
    void removeDarkMetadataSet(const DarkMetadataSet& dark);

    /// Removes the fill (and zero padding) that follows the last set or dark metadata set, so
    /// that `serialize` ends with the last set; a writer adds the fill its region needs.
    void dropTrailingFill();

    /// A new set, owned by the partition, with every element its definition lists and a new
    /// instance identifier, under `key` as given (which may differ from its definition's in the
    /// version byte or the item length coding). Throws InvalidFormat when the dictionary has no
    /// local set for `key`.
    MetadataSet* createMetadataSet(const KLV::Key& key);
    /// Takes ownership of `dark`. Throws InvalidFormat for a null pointer.
    void addDarkMetadataSet(Templates::auto_ptr<DarkMetadataSet> dark);
    DarkList::const_iterator darkBegin() const noexcept { return m_darkList.begin(); }
    DarkList::const_iterator darkEnd() const noexcept { return m_darkList.end(); }
    std::size_t darkCount() const noexcept { return m_darkList.size(); }

    /// Fills `order` with every set: with `referencedFirst`, the sets reached from the first
    /// Preface through strong references (depth first, in element order), then the others in
    /// stored order; otherwise all in stored order. With `followWeak`, weak references count
    /// as reaching a set too. Returns the number of sets not reached (the last entries of
    /// `order`); without `referencedFirst`, every set counts as not reached.
    unsigned calculateSerializationOrder(std::vector<const MetadataSet*>& order,
                                         bool referencedFirst, bool followWeak) const;

    /// Gives every element that holds a value and has no local tag one from the primer.
    void assignLocalTags();
    /// The number of bytes `serialize` writes. Assigns local tags first, since new tags make
    /// the primer longer.
    std::uint64_t serializedSize();
    /// Writes the header metadata: primer pack, then the sets, dark sets and fill in stored
    /// order, then those added later. Assigns local tags first.
    void serialize(DataIO::DataSink& sink);

    /// Called by a set when the instance identifier of one of its elements changes.
    void instanceUIDChanged() noexcept { m_uidIndexValid = false; }

private:
    friend class HeaderMetadataReader;

    /// Bytes of fill between stored items, kept so that the stored layout is written back.
    using Fill = std::vector<std::uint8_t>;
    /// One stored item, in stored order.
    using LayoutEntry = std::variant<MetadataSet*, DarkMetadataSet*, Fill>;

    MetadataSet* adoptSet(std::unique_ptr<MetadataSet> set);
    void adoptDark(std::unique_ptr<DarkMetadataSet> dark);
    void addFill(DataIO::Slice bytes);

    PartitionDictionary m_primer;
    std::vector<std::unique_ptr<MetadataSet>> m_sets;
    SetList m_setList;
    std::vector<std::unique_ptr<DarkMetadataSet>> m_darkSets;
    DarkList m_darkList;
    std::vector<LayoutEntry> m_layout;
    /// The sets by key without version byte (and with 0x53 for 0x13), each list in the order
    /// the sets were adopted.
    std::map<KLV::Key, SetList> m_byKey;
    mutable std::map<Types::UUID, SetList> m_byUID;
    mutable bool m_uidIndexValid = false;
};

} // namespace Vellum::Metadata

#endif
