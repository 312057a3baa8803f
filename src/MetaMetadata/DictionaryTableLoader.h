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
#include <vector>

namespace Vellum::MetaMetadata {

/// Fills a dictionary from the compiled-in tables (BuiltInTables): the fast path of
/// `Dictionary::builtIn()`.
///
/// `load()` makes every set at once and nothing else. A set's elements, and its tables of
/// inherited ones, are made the first time anything asks for them (`materialize`), so a
/// program pays only for the sets it uses. Look-ups of elements by label or static tag go
/// through the generated indexes until `materializeAll()` has made everything and filled the
/// dictionary's own indexes (before a user text is loaded on top, or when all elements are
/// listed). Safe for concurrent look-ups: making elements is serialised by one mutex and
/// published through each set's flag.
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

    /// Makes every set; throws InvalidFormat for tables that break their own rules (an index
    /// out of range, a parent after its child, a key or name listed twice).
    void load();

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
    MetaMetadataSet& set(std::uint16_t index) const;
    void makeSet(std::size_t index);
    void makeElements(MetaMetadataSet& owner, const BuiltInTables::SetRow& row);
    static void inherit(MetaMetadataSet& set);
    /// The made element of element row `row`.
    const MetaElement* element(std::uint16_t row);

    Dictionary& m_dictionary;
    const BuiltInTables::Tables& m_tables;
    std::vector<MetaMetadataSet*> m_sets;
    std::mutex m_mutex;
    std::atomic<bool> m_complete{false};
};

} // namespace Vellum::MetaMetadata

#endif
