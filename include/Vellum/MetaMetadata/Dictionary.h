#ifndef VELLUM_METAMETADATA_DICTIONARY_H
#define VELLUM_METAMETADATA_DICTIONARY_H

#include "Vellum/Core/Export.h"
#include "Vellum/KLV/Key.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Templates/Templates.h"
#include "Vellum/Types/UniversalLabel.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace Vellum::MetaMetadata {

class DictionaryTableLoader;

/// The meta-dictionary: every set, pack and element definition the toolkit knows, with the
/// XML mapping of each.
///
/// `builtIn()` gives the definitions compiled into the library: every local set of the SMPTE
/// Metadata Registers with its elements (the sets of MXF header metadata, descriptors and
/// sub-descriptors, descriptive schemes, the AAF meta-dictionary ...), the partition, primer
/// and random index packs, and the Avid private elements. `loadFile` and `loadText` add a
/// user dictionary on top: private or newer sets, and elements added to existing sets. The
/// file format is described in docs/dictionary-format.md.
///
/// Look-ups by key or label ignore byte 8 (index 7), the registry version, because files and
/// registers disagree on it. The dictionary owns every definition; pointers to sets and
/// elements stay valid as long as it lives. A load either adds all of a text's definitions
/// or, when it throws, leaves the dictionary as it was. Not safe for concurrent use while a
/// load runs; concurrent look-ups are fine.
class VELLUM_CORE_EXPORT Dictionary {
public:
    /// Sets or packs by key, in key order.
    using SetMap = std::map<KLV::Key, MetaMetadataSet>;
    /// Element definitions by label, in label order; one entry per label.
    using ElementMap = std::map<Types::UniversalLabel, const MetaElement*>;

    /// An empty dictionary.
    Dictionary();
    Dictionary(const Dictionary&) = delete;
    Dictionary& operator=(const Dictionary&) = delete;
    ~Dictionary();

    /// A new dictionary holding the compiled-in definitions. Each call builds a fresh one,
    /// owned by the caller, which may extend it. It is built from compiled-in tables, not by
    /// parsing text: each set when first looked up (or listed), each set's elements when first
    /// used. Throws only if the compiled-in tables were faulty (InvalidFormat) or memory runs
    /// out.
    static Templates::SharedPtr<Dictionary> builtIn();
    /// The compiled-in dictionary text (the data file the library was built with); loading
    /// it into an empty dictionary gives the same definitions as `builtIn()`.
    static std::string_view builtInText();

    /// Adds the definitions of the dictionary file at `path` (UTF-8). Throws IOError if the
    /// file cannot be read, InvalidFormat (naming the path and line) for a fault in it.
    void loadFile(const std::string& path);
    /// Adds the definitions of a dictionary text; `sourceName` names it in messages. A set
    /// may name a parent defined in the same text or already in the dictionary; an element
    /// may be added to an existing set. Definitions equal to ones already present are
    /// accepted and change nothing. Throws InvalidFormat "<sourceName>:<line>: <fault>" for
    /// a malformed line, an unknown name, a key or label defined twice with different
    /// content, a cycle of parents, and the like; the dictionary is then unchanged.
    void loadText(std::string_view text, const std::string& sourceName);

    /// The local sets that have a key, in key order. The first call on the built-in
    /// dictionary makes every set definition (as do the pack functions).
    SetMap::const_iterator metaMetadataSetBegin() const;
    SetMap::const_iterator metaMetadataSetEnd() const;
    std::size_t metaMetadataSetCount() const;
    /// The packs (partition, primer, random index), in key order.
    SetMap::const_iterator packBegin() const;
    SetMap::const_iterator packEnd() const;
    std::size_t packCount() const;
    /// Every set and pack definition, keyless abstract sets included.
    std::size_t setDefinitionCount() const noexcept;

    /// One element definition per label, in label order (see `findElement` for which one).
    /// The first call on the built-in dictionary makes every element definition.
    ElementMap::const_iterator metaElementBegin() const;
    ElementMap::const_iterator metaElementEnd() const;
    /// Every element definition of every set and pack; a label that several sets define
    /// counts once per set.
    std::size_t elementDefinitionCount() const noexcept { return m_elementDefinitionCount; }

    /// The local set with this key (byte 8 ignored), or nullptr.
    const MetaMetadataSet* findSet(const KLV::Key& key) const;
    /// The pack with this key (byte 8 ignored), or nullptr.
    const MetaMetadataSet* findPack(const KLV::Key& key) const;
    /// The set or pack of this name, or nullptr.
    const MetaMetadataSet* findSetByName(const WString& name) const;
    /// The local set with a key whose "XMLTagName" is `tagName`; where several share it, the
    /// first in key order; nullptr if none.
    const MetaMetadataSet* findSetByTagName(std::u16string_view tagName) const;
    /// The definition of the element with this label (byte 8 ignored), or nullptr. Where
    /// several sets define the label, a local set is preferred to a pack, a definition with
    /// a static local tag to one without, and then the one loaded first.
    const MetaElement* findElement(const Types::UniversalLabel& ul) const;
    /// The definition of the element with this static local tag (as `findElement`), or
    /// nullptr.
    const MetaElement* findElementByStaticTag(std::uint16_t tag) const;

private:
    friend class DictionaryBuilder;
    friend class DictionaryTableLoader;

    /// Whether set look-ups still go through the built-in tables.
    bool setsFromTables() const noexcept;
    /// Makes every built-in set not made yet, so that the set maps are complete.
    void makeAllSets() const;
    /// The set or pack with this key (byte 8 ignored), or nullptr.
    const MetaMetadataSet* findByKey(const KLV::Key& key) const;
    /// Adds a set just added to the dictionary to `m_setsByTagName` when it is a local set
    /// with a key that comes before any other of its tag name in key order.
    void indexTagName(const MetaMetadataSet& set);

    SetMap m_sets;
    SetMap m_packs;
    std::map<WString, MetaMetadataSet> m_keylessSets;
    std::map<WString, MetaMetadataSet*> m_setsByName;
    /// Local sets with a key by XML tag name (see `findSetByTagName`).
    std::map<WString, const MetaMetadataSet*, std::less<>> m_setsByTagName;
    /// Sets and packs by key with byte 8 set to zero.
    std::map<KLV::Key, MetaMetadataSet*> m_setsByBaseKey;
    ElementMap m_elements;
    /// The entries of m_elements by label with byte 8 set to zero.
    ElementMap m_elementsByBaseLabel;
    std::map<std::uint16_t, const MetaElement*> m_elementsByTag;
    std::size_t m_elementDefinitionCount = 0;
    /// The built-in definitions, made on first use; nullptr for a dictionary that did not
    /// start from them. Until it has made every set, set look-ups go through it instead of
    /// the set maps above; until it is complete, element look-ups go through it instead of
    /// the three element maps.
    std::unique_ptr<DictionaryTableLoader> m_builtIn;
};

} // namespace Vellum::MetaMetadata

#endif
