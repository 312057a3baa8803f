#ifndef VELLUM_SRC_METAMETADATA_DICTIONARYBUILDER_H
#define VELLUM_SRC_METAMETADATA_DICTIONARYBUILDER_H

#include "MetaMetadata/DictionaryParser.h"
#include "MetaMetadata/SetTableResolver.h"

#include "Vellum/KLV/Key.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Types/UniversalLabel.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Vellum::MetaMetadata {

/// Adds the records of one parsed dictionary text to a dictionary.
///
/// Everything is checked and built aside first: names are resolved against the text and the
/// dictionary, new sets are made in staging maps, and the element tables of every set
/// (inheritance included) are worked out again. Only when nothing is wrong are the staged
/// nodes moved into the dictionary, so a fault leaves the dictionary as it was.
class DictionaryBuilder {
public:
    /// Both are borrowed for the builder's life.
    DictionaryBuilder(Dictionary& dictionary, const DictionaryParser& parsed);
    DictionaryBuilder(const DictionaryBuilder&) = delete;
    DictionaryBuilder& operator=(const DictionaryBuilder&) = delete;

    /// Checks and adds everything; throws InvalidFormat naming the source and line.
    void build();

    /// `ul` with byte 8 (the registry version) set to zero.
    static Types::UniversalLabel baseLabel(const Types::UniversalLabel& ul) noexcept;
    /// Adds an element that has joined its set to the dictionary's label and tag indexes.
    static void indexElement(Dictionary& dictionary, const MetaElement& element);

private:
    using SetRecord = DictionaryParser::SetRecord;
    using ElementRecord = DictionaryParser::ElementRecord;

    enum class Visit : std::uint8_t { No, Running, Done };

    /// A set this text defines.
    struct NewSet {
        const SetRecord* record = nullptr;
        WString name;
        NewSet* newParent = nullptr;
        const MetaMetadataSet* oldParent = nullptr;
        Visit visit = Visit::No;
        MetaMetadataSet* made = nullptr;
    };

    /// A new element, made and waiting to join its set.
    struct NewElement {
        MetaMetadataSet* set = nullptr;
        std::unique_ptr<MetaElement> element;
        unsigned line = 0;
    };

    [[noreturn]] void fail(unsigned line, const std::string& message) const;

    void stageSets();
    void checkSameSet(const SetRecord& record, const MetaMetadataSet& existing) const;
    void checkKeys();
    void resolveParents();
    void orderNewSets();
    void makeSets();

    void stageElements();
    MetaMetadataSet* findWritableSet(const WString& name) const;
    const MetaElement* findOwn(const MetaMetadataSet& set, const Types::UniversalLabel& base) const;
    MetaElement::Definition elementDefinition(const ElementRecord& record,
                                              const MetaMetadataSet& set,
                                              const MetaElement* existing);
    void checkAgainstOthers(const ElementRecord& record, const MetaElement::Definition& definition,
                            const Types::UniversalLabel& base) const;
    void checkTag(const ElementRecord& record, const MetaElement::Definition& definition,
                  const Types::UniversalLabel& base) const;
    unsigned nextOrder(const MetaMetadataSet& set, unsigned line) const;
    void addNewElement(const ElementRecord& record, MetaMetadataSet& set,
                       MetaElement::Definition definition, const Types::UniversalLabel& base);

    void resolveTables();
    unsigned lineOf(const MetaElement* first, const MetaElement* second) const;

    void commit();

    Dictionary& m_dictionary;
    const DictionaryParser& m_parsed;

    std::map<WString, NewSet> m_newSets;
    std::vector<NewSet*> m_newSetOrder;
    Dictionary::SetMap m_stagedSets;
    Dictionary::SetMap m_stagedPacks;
    std::map<WString, MetaMetadataSet> m_stagedKeyless;

    std::vector<NewElement> m_newElements;
    std::map<std::pair<const MetaMetadataSet*, Types::UniversalLabel>, const MetaElement*> m_newOwn;
    std::map<Types::UniversalLabel, const MetaElement*> m_newByBaseLabel;
    std::map<std::uint16_t, const MetaElement*> m_newByTag;
    std::map<const MetaMetadataSet*, unsigned> m_lastOrder;

    SetTableResolver m_resolver;
};

} // namespace Vellum::MetaMetadata

#endif
