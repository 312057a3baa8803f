#ifndef VELLUM_SRC_METAMETADATA_DICTIONARYTABLELOADER_H
#define VELLUM_SRC_METAMETADATA_DICTIONARYTABLELOADER_H

#include "MetaMetadata/BuiltInDictionaryTables.h"

#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Types/UniversalLabel.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <vector>

namespace Vellum::MetaMetadata {

/// Fills a dictionary from the compiled-in tables (BuiltInTables): the fast path of
/// `Dictionary::builtIn()`.
///
/// `load()` only checks the tables. A set is made the first time it is looked up (with its
/// ancestors), and its elements and tables of inherited ones the first time anything asks
/// for them (`materialize`), so a program pays only for the sets it uses. Until
/// `makeAllSets()` has run, look-ups of sets go through the generated key and name indexes
/// instead of the dictionary's maps; until `materializeAll()` has run, look-ups of elements
/// go through the generated label and tag indexes. Safe for concurrent look-ups: making sets
/// and elements is serialised by one mutex and published through atomic pointers and flags.
///
/// The tables come from the same generator run as the dictionary text and were checked
/// there, so nothing is parsed or resolved by name: sets and targets are table indexes, and
/// parents come before their children. Owned by the dictionary it fills.
class DictionaryTableLoader {
public:
    /// Both are borrowed for the loader's life; `dictionary` must be empty.
    DictionaryTableLoader(Dictionary& dictionary, const BuiltInTables::Tables& tables);
    DictionaryTableLoader(const DictionaryTableLoader&) = delete;
    DictionaryTableLoader& operator=(const DictionaryTableLoader&) = delete;
    ~DictionaryTableLoader();

    /// Checks the tables; throws InvalidFormat for tables that break their own rules (an
    /// index out of range, a parent after its child, an index that is not sorted or lists a
    /// key or name twice). Makes nothing.
    void load();

    /// `Dictionary::findSet` and `findPack` before `makeAllSets()`: the set or pack with this
    /// key (byte 8 ignored), made if needed, or nullptr.
    const MetaMetadataSet* findSet(const KLV::Key& key);
    /// `Dictionary::findSetByName` before `makeAllSets()`.
    const MetaMetadataSet* findSetByName(const WString& name);
    /// `Dictionary::findSetByTagName` before `makeAllSets()`.
    const MetaMetadataSet* findSetByTagName(std::u16string_view tagName);
    /// Makes every set that is not made yet and puts all of them in the dictionary's maps.
    void makeAllSets();
    /// Whether `makeAllSets()` has run.
    bool allSetsMade() const noexcept { return m_allSetsMade.load(std::memory_order_acquire); }
    /// How many sets and packs the tables define.
    std::size_t setCount() const noexcept { return m_tables.setCount; }

    /// Makes the elements and element tables of `set` (a set this loader made) and of its
    /// ancestors, if not done yet.
    void materialize(const MetaMetadataSet& set);
    /// Makes everything and fills the dictionary's label and tag indexes.
    void materializeAll();
    /// Whether `materializeAll()` has run.
    bool complete() const noexcept { return m_complete.load(std::memory_order_acquire); }

    /// `Dictionary::findElement` before `materializeAll()`: by the generated label index.
    const MetaElement* findElement(const Types::UniversalLabel& ul);
    /// `Dictionary::findElementByStaticTag` before `materializeAll()`.
    const MetaElement* findElementByStaticTag(std::uint16_t tag);

private:
    WString string(std::uint16_t index) const;
    std::u16string_view stringView(std::uint16_t index) const;
    /// The set of table row `index`, made (with its ancestors) if needed.
    const MetaMetadataSet& madeSet(std::size_t index);
    /// As `madeSet`, for a caller that holds `m_mutex`.
    MetaMetadataSet& setLocked(std::size_t index);
    void makeSet(std::size_t index);
    void makeElements(MetaMetadataSet& owner, const BuiltInTables::SetRow& row);
    static void inherit(MetaMetadataSet& set);
    /// The made element of element row `row`.
    const MetaElement* element(std::uint16_t row);

    Dictionary& m_dictionary;
    const BuiltInTables::Tables& m_tables;
    /// The made set of each table row, or nullptr; written under `m_mutex`.
    std::vector<std::atomic<MetaMetadataSet*>> m_made;
    std::mutex m_mutex;
    std::atomic<bool> m_allSetsMade{false};
    std::atomic<bool> m_complete{false};
};

} // namespace Vellum::MetaMetadata

#endif
