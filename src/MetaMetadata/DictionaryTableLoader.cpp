#include "MetaMetadata/DictionaryTableLoader.h"

#include "MetaMetadata/DictionaryBuilder.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/MetaCollectionElement.h"

#include <algorithm>
#include <memory>
#include <string>
#include <tuple>

namespace Vellum::MetaMetadata {
namespace {

[[noreturn]] void fault(const std::string& message) {
    VELLUM_THROW(InvalidFormat, "built-in dictionary tables: " + message);
}

bool hasFlag(const BuiltInTables::SetRow& row, BuiltInTables::SetFlag flag) {
    return (row.flags & flag) != 0;
}

} // namespace

DictionaryTableLoader::DictionaryTableLoader(Dictionary& dictionary,
                                             const BuiltInTables::Tables& tables)
    : m_dictionary(dictionary)
    , m_tables(tables) {}

DictionaryTableLoader::~DictionaryTableLoader() = default;

std::u16string_view DictionaryTableLoader::stringView(std::uint16_t index) const {
    if (index >= m_tables.stringCount) {
        fault("string index " + std::to_string(index) + " is out of range");
    }
    const std::uint32_t start = m_tables.stringStarts[index];
    return std::u16string_view(m_tables.stringData + start,
                               m_tables.stringStarts[index + 1] - start);
}

WString DictionaryTableLoader::string(std::uint16_t index) const {
    return WString(stringView(index));
}

void DictionaryTableLoader::load() {
    if (!m_dictionary.m_setsByName.empty()) {
        fault("the dictionary to fill is not empty");
    }
    for (std::size_t i = 0; i < m_tables.stringCount; ++i) {
        if (m_tables.stringStarts[i] > m_tables.stringStarts[i + 1] ||
            m_tables.stringStarts[i + 1] > m_tables.stringDataSize) {
            fault("text " + std::to_string(i) + " lies outside the text data");
        }
    }
    std::size_t keyed = 0;
    for (std::size_t i = 0; i < m_tables.setCount; ++i) {
        const BuiltInTables::SetRow& row = m_tables.sets[i];
        if (row.parent != BuiltInTables::noSet && row.parent >= i) {
            fault("set " + std::to_string(i) + " comes before its parent");
        }
        if (std::size_t{row.firstElement} + row.elementCount > m_tables.elementCount) {
            fault("the elements of set " + std::to_string(i) + " are out of range");
        }
        keyed += hasFlag(row, BuiltInTables::keyFlag) ? 1 : 0;
    }
    // The two set indexes: each set once, strictly sorted (so no key or name twice).
    if (m_tables.setKeyCount != keyed || m_tables.setNameCount != m_tables.setCount) {
        fault("the set indexes do not list every set once");
    }
    for (std::size_t i = 0; i < m_tables.setKeyCount; ++i) {
        const BuiltInTables::SetKeyRow& row = m_tables.setKeys[i];
        if (row.set >= m_tables.setCount ||
            !hasFlag(m_tables.sets[row.set], BuiltInTables::keyFlag) ||
            KLV::Key(m_tables.sets[row.set].key).withoutVersion() != KLV::Key(row.baseKey) ||
            (i != 0 && !(m_tables.setKeys[i - 1].baseKey < row.baseKey))) {
            fault("the key index is wrong at row " + std::to_string(i));
        }
    }
    for (std::size_t i = 0; i < m_tables.setNameCount; ++i) {
        const std::uint16_t set = m_tables.setNames[i];
        if (set >= m_tables.setCount ||
            (i != 0 && !(stringView(m_tables.sets[m_tables.setNames[i - 1]].name) <
                         stringView(m_tables.sets[set].name)))) {
            fault("the name index is wrong at row " + std::to_string(i));
        }
    }
    for (std::size_t i = 0; i < m_tables.setTagCount; ++i) {
        const BuiltInTables::SetTagRow& row = m_tables.setTags[i];
        if (row.set >= m_tables.setCount ||
            !hasFlag(m_tables.sets[row.set], BuiltInTables::keyFlag) ||
            hasFlag(m_tables.sets[row.set], BuiltInTables::packFlag) ||
            m_tables.sets[row.set].xmlTag != row.tag ||
            (i != 0 && !(stringView(m_tables.setTags[i - 1].tag) < stringView(row.tag)))) {
            fault("the tag name index is wrong at row " + std::to_string(i));
        }
    }
    m_made = std::vector<std::atomic<MetaMetadataSet*>>(m_tables.setCount);
    m_dictionary.m_elementDefinitionCount = m_tables.elementCount;
}

const MetaMetadataSet* DictionaryTableLoader::findSet(const KLV::Key& key) {
    const KLV::Key::Bytes base = key.withoutVersion().bytes();
    const BuiltInTables::SetKeyRow* end = m_tables.setKeys + m_tables.setKeyCount;
    const BuiltInTables::SetKeyRow* found =
        std::lower_bound(m_tables.setKeys, end, base,
                         [](const BuiltInTables::SetKeyRow& row, const KLV::Key::Bytes& value) {
                             return row.baseKey < value;
                         });
    return found != end && found->baseKey == base ? &madeSet(found->set) : nullptr;
}

const MetaMetadataSet* DictionaryTableLoader::findSetByName(const WString& name) {
    const std::uint16_t* end = m_tables.setNames + m_tables.setNameCount;
    const std::uint16_t* found =
        std::lower_bound(m_tables.setNames, end, std::u16string_view(name),
                         [this](std::uint16_t set, std::u16string_view value) {
                             return stringView(m_tables.sets[set].name) < value;
                         });
    return found != end && stringView(m_tables.sets[*found].name) == name ? &madeSet(*found)
                                                                          : nullptr;
}

const MetaMetadataSet* DictionaryTableLoader::findSetByTagName(std::u16string_view tagName) {
    const BuiltInTables::SetTagRow* end = m_tables.setTags + m_tables.setTagCount;
    const BuiltInTables::SetTagRow* found =
        std::lower_bound(m_tables.setTags, end, tagName,
                         [this](const BuiltInTables::SetTagRow& row, std::u16string_view value) {
                             return stringView(row.tag) < value;
                         });
    return found != end && stringView(found->tag) == tagName ? &madeSet(found->set) : nullptr;
}

void DictionaryTableLoader::makeAllSets() {
    if (allSetsMade()) {
        return;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (std::size_t i = 0; i < m_tables.setCount; ++i) {
        setLocked(i);
    }
    m_allSetsMade.store(true, std::memory_order_release);
}

const MetaMetadataSet& DictionaryTableLoader::madeSet(std::size_t index) {
    if (index >= m_made.size()) {
        fault("set index " + std::to_string(index) + " is out of range");
    }
    if (const MetaMetadataSet* made = m_made[index].load(std::memory_order_acquire)) {
        return *made;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    return setLocked(index);
}

MetaMetadataSet& DictionaryTableLoader::setLocked(std::size_t index) {
    if (index >= m_made.size()) {
        fault("set index " + std::to_string(index) + " is out of range");
    }
    if (m_made[index].load(std::memory_order_relaxed) == nullptr) {
        makeSet(index);
    }
    return *m_made[index].load(std::memory_order_relaxed);
}

void DictionaryTableLoader::makeSet(std::size_t index) {
    const BuiltInTables::SetRow& row = m_tables.sets[index];
    // load() checked that every parent comes first, so this recursion ends.
    const MetaMetadataSet* parent =
        row.parent == BuiltInTables::noSet ? nullptr : &setLocked(row.parent);
    MetaMetadataSet::Definition definition;
    if (hasFlag(row, BuiltInTables::keyFlag)) {
        definition.key = KLV::Key(row.key);
    }
    definition.name = string(row.name);
    definition.kind = hasFlag(row, BuiltInTables::packFlag) ? MetaMetadataSet::Kind::Pack
                                                            : MetaMetadataSet::Kind::LocalSet;
    definition.abstract = hasFlag(row, BuiltInTables::abstractFlag);
    definition.structural = hasFlag(row, BuiltInTables::structuralFlag);
    definition.xmlTagName = string(row.xmlTag);
    definition.xmlPrefix = string(row.xmlPrefix);
    definition.xmlNamespace = string(row.xmlNamespace);
    MetaMetadataSet* made = nullptr;
    if (!definition.key) {
        WString name = definition.name;
        made = &m_dictionary.m_keylessSets
                    .emplace(std::piecewise_construct, std::forward_as_tuple(std::move(name)),
                             std::forward_as_tuple(std::move(definition), parent))
                    .first->second;
    } else {
        const KLV::Key key(row.key);
        Dictionary::SetMap& sets =
            hasFlag(row, BuiltInTables::packFlag) ? m_dictionary.m_packs : m_dictionary.m_sets;
        made = &sets.emplace(std::piecewise_construct, std::forward_as_tuple(key),
                             std::forward_as_tuple(std::move(definition), parent))
                    .first->second;
        m_dictionary.m_setsByBaseKey.emplace(key.withoutVersion(), made);
    }
    m_dictionary.m_setsByName.emplace(made->name(), made);
    m_dictionary.indexTagName(*made);
    made->m_loader = this;
    made->m_tableIndex = static_cast<std::uint16_t>(index);
    made->m_materialized.store(false, std::memory_order_relaxed);
    m_made[index].store(made, std::memory_order_release);
}

void DictionaryTableLoader::materialize(const MetaMetadataSet& wanted) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    // The sets of the chain that still wait, nearest first; ancestors are made first so
    // that each set inherits complete tables.
    std::vector<MetaMetadataSet*> chain;
    for (std::uint16_t index = wanted.m_tableIndex;;) {
        MetaMetadataSet& current = setLocked(index);
        if (current.m_materialized.load(std::memory_order_relaxed)) {
            break;
        }
        chain.push_back(&current);
        index = m_tables.sets[index].parent;
        if (index == BuiltInTables::noSet) {
            break;
        }
    }
    for (auto step = chain.rbegin(); step != chain.rend(); ++step) {
        makeElements(**step, m_tables.sets[(*step)->m_tableIndex]);
        inherit(**step);
        (*step)->m_materialized.store(true, std::memory_order_release);
    }
}

void DictionaryTableLoader::materializeAll() {
    if (complete()) {
        return;
    }
    makeAllSets();
    for (const auto& made : m_made) {
        const MetaMetadataSet& set = *made.load(std::memory_order_acquire);
        if (!set.m_materialized.load(std::memory_order_acquire)) {
            materialize(set);
        }
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (complete()) {
        return;
    }
    // Table order is load order, so the indexes prefer the same definitions as a text load.
    for (const auto& made : m_made) {
        for (const MetaElement* element : made.load(std::memory_order_relaxed)->m_ownElements) {
            DictionaryBuilder::indexElement(m_dictionary, *element);
        }
    }
    m_complete.store(true, std::memory_order_release);
}

void DictionaryTableLoader::makeElements(MetaMetadataSet& owner, const BuiltInTables::SetRow& row) {
    owner.m_ownedElements.reserve(row.elementCount);
    owner.m_ownElements.reserve(row.elementCount);
    const std::size_t end = std::size_t{row.firstElement} + row.elementCount;
    for (std::size_t i = row.firstElement; i < end; ++i) {
        const BuiltInTables::ElementRow& element = m_tables.elements[i];
        MetaElement::Definition definition;
        definition.ul = Types::UniversalLabel(element.ul);
        definition.name = string(element.name);
        if (element.localTag != 0) {
            definition.staticLocalTag = element.localTag;
        }
        definition.valueType = element.type;
        definition.referenceKind = element.reference;
        const MetaMetadataSet* target = nullptr;
        if (element.target != BuiltInTables::noSet) {
            target = &setLocked(element.target);
            definition.targetSetName = target->name();
        }
        definition.requiredStatus = element.required;
        definition.order = element.order;
        definition.schemaIndex = element.schemaIndex;
        definition.xmlTagName = string(element.xmlTag);
        definition.xmlPrefix = string(element.xmlPrefix);
        definition.xmlNamespace = string(element.xmlNamespace);
        std::unique_ptr<MetaElement> made;
        if (element.collection == BuiltInTables::Collection::None) {
            made = std::make_unique<MetaElement>(std::move(definition), owner);
        } else {
            made = std::make_unique<MetaCollectionElement>(
                std::move(definition), owner,
                element.collection == BuiltInTables::Collection::Batch ? Types::Identifiers::Batch
                                                                       : Types::Identifiers::Array);
        }
        made->m_targetSet = target;
        owner.m_ownElements.push_back(made.get());
        owner.m_ownedElements.push_back(std::move(made));
    }
}

void DictionaryTableLoader::inherit(MetaMetadataSet& set) {
    if (const MetaMetadataSet* parent = set.parent()) {
        set.m_elements = parent->m_elements;
        set.m_bySchemaIndex = parent->m_bySchemaIndex;
        set.m_byTag = parent->m_byTag;
    }
    for (const MetaElement* element : set.m_ownElements) {
        set.m_elements.emplace(element->ul(), element);
        set.m_bySchemaIndex.push_back(element);
        if (element->definition().staticLocalTag) {
            set.m_byTag.emplace_back(*element->definition().staticLocalTag, element);
        }
    }
    std::sort(set.m_bySchemaIndex.begin(), set.m_bySchemaIndex.end(),
              [](const MetaElement* a, const MetaElement* b) {
                  return a->schemaIndex() != b->schemaIndex() ? a->schemaIndex() < b->schemaIndex()
                                                              : a->ul() < b->ul();
              });
    std::sort(set.m_byTag.begin(), set.m_byTag.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
}

const MetaElement* DictionaryTableLoader::element(std::uint16_t row) {
    if (row >= m_tables.elementCount) {
        fault("element index " + std::to_string(row) + " is out of range");
    }
    const std::uint16_t setIndex = m_tables.elements[row].set;
    const MetaMetadataSet& owner = madeSet(setIndex);
    if (!owner.m_materialized.load(std::memory_order_acquire)) {
        materialize(owner);
    }
    const std::size_t position = row - m_tables.sets[setIndex].firstElement;
    if (position >= owner.m_ownElements.size()) {
        fault("element index " + std::to_string(row) + " is not in its set");
    }
    return owner.m_ownElements[position];
}

const MetaElement* DictionaryTableLoader::findElement(const Types::UniversalLabel& ul) {
    const KLV::Key::Bytes base = DictionaryBuilder::baseLabel(ul).bytes();
    const BuiltInTables::LabelRow* end = m_tables.labels + m_tables.labelCount;
    const BuiltInTables::LabelRow* found =
        std::lower_bound(m_tables.labels, end, base,
                         [](const BuiltInTables::LabelRow& row, const KLV::Key::Bytes& value) {
                             return row.baseLabel < value;
                         });
    return found != end && found->baseLabel == base ? element(found->element) : nullptr;
}

const MetaElement* DictionaryTableLoader::findElementByStaticTag(std::uint16_t tag) {
    const BuiltInTables::TagRow* end = m_tables.tags + m_tables.tagCount;
    const BuiltInTables::TagRow* found = std::lower_bound(
        m_tables.tags, end, tag,
        [](const BuiltInTables::TagRow& row, std::uint16_t value) { return row.tag < value; });
    return found != end && found->tag == tag ? element(found->element) : nullptr;
}

} // namespace Vellum::MetaMetadata
