#include "MetaMetadata/DictionaryBuilder.h"

#include "Utils/HexText.h"

#include "Vellum/MetaMetadata/MetaCollectionElement.h"
#include "Vellum/Utils/StringConversion.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>

namespace Vellum::MetaMetadata {
namespace {

// Real class trees are about ten levels deep; the bound keeps a hostile chain of parents
// from making element tables of quadratic size.
constexpr unsigned maxDepth = 64;

std::string text(const WString& value) {
    return "'" + Utils::wstringToString(value) + "'";
}

std::string text(std::string_view value) {
    return "'" + std::string(value) + "'";
}

std::string labelText(const Types::UniversalLabel& ul) {
    return Utils::wstringToString(ul.toString());
}

std::string tagText(std::uint16_t tag) {
    std::string out;
    Utils::appendHexByte(out, static_cast<std::uint8_t>(tag >> 8U));
    Utils::appendHexByte(out, static_cast<std::uint8_t>(tag));
    return out;
}

const char* kindName(MetaMetadataSet::Kind kind) {
    return kind == MetaMetadataSet::Kind::Pack ? "pack" : "local set";
}

bool sameSetRecord(const DictionaryParser::SetRecord& a, const DictionaryParser::SetRecord& b) {
    return std::tie(a.kind, a.key, a.name, a.parent, a.abstract, a.structural, a.xmlPrefix,
                    a.xmlNamespace, a.xmlTag) == std::tie(b.kind, b.key, b.name, b.parent,
                                                          b.abstract, b.structural, b.xmlPrefix,
                                                          b.xmlNamespace, b.xmlTag);
}

std::optional<Types::Identifiers::Identifier> collectionOf(const MetaElement& element) {
    if (element.isCollection()) {
        return element.dataType();
    }
    return std::nullopt;
}

// What a definition of a label says about its values, for messages.
std::string shape(Types::Identifiers::Identifier type,
                  std::optional<Types::Identifiers::Identifier> collection,
                  MetaElement::ReferenceKind reference) {
    static constexpr const char* references[] = {"", " strong", " weak", " global"};
    std::string out = Types::Identifiers::typeName(type);
    out += references[static_cast<unsigned>(reference)];
    if (collection) {
        out += *collection == Types::Identifiers::Batch ? " batch" : " array";
    }
    return out;
}

// Which field of two definitions of one element in one set differs, or nullptr.
const char* difference(const MetaElement::Definition& a,
                       std::optional<Types::Identifiers::Identifier> collection,
                       const MetaElement& existing) {
    const MetaElement::Definition& b = existing.definition();
    if (a.ul != b.ul) {
        return "label version byte";
    }
    if (a.name != b.name) {
        return "name";
    }
    if (a.staticLocalTag != b.staticLocalTag) {
        return "local tag";
    }
    if (a.valueType != b.valueType || collection != collectionOf(existing)) {
        return "type";
    }
    if (a.referenceKind != b.referenceKind || a.targetSetName != b.targetSetName) {
        return "reference";
    }
    if (a.requiredStatus != b.requiredStatus) {
        return "required status";
    }
    if (a.order != b.order || a.schemaIndex != b.schemaIndex) {
        return "order or schema index";
    }
    if (a.xmlTagName != b.xmlTagName || a.xmlPrefix != b.xmlPrefix ||
        a.xmlNamespace != b.xmlNamespace) {
        return "XML name";
    }
    return nullptr;
}

// Where several sets define one label, the label index prefers a local set to a pack and a
// definition with a static tag to one without.
int preference(const MetaElement& element) {
    return (element.definingSet().kind() == MetaMetadataSet::Kind::LocalSet ? 2 : 0) +
           (element.staticLocalTag() ? 1 : 0);
}

} // namespace

DictionaryBuilder::DictionaryBuilder(Dictionary& dictionary, const DictionaryParser& parsed)
    : m_dictionary(dictionary)
    , m_parsed(parsed)
    , m_resolver(parsed.sourceName(), [this](const MetaElement* first, const MetaElement* second) {
        return lineOf(first, second);
    }) {}

void DictionaryBuilder::fail(unsigned line, const std::string& message) const {
    throwAtLine(m_parsed.sourceName(), line, message);
}

Types::UniversalLabel DictionaryBuilder::baseLabel(const Types::UniversalLabel& ul) noexcept {
    Types::UniversalLabel::Bytes bytes = ul.bytes();
    bytes[7] = 0;
    return Types::UniversalLabel(bytes);
}

void DictionaryBuilder::build() {
    stageSets();
    checkKeys();
    resolveParents();
    orderNewSets();
    makeSets();
    stageElements();
    resolveTables();
    commit();
}

void DictionaryBuilder::stageSets() {
    for (const SetRecord& record : m_parsed.sets()) {
        WString name = widen(record.name);
        if (const MetaMetadataSet* existing = m_dictionary.findSetByName(name)) {
            checkSameSet(record, *existing);
            continue;
        }
        const auto [entry, added] = m_newSets.try_emplace(std::move(name));
        NewSet& set = entry->second;
        if (!added) {
            if (!sameSetRecord(*set.record, record)) {
                fail(record.line, "set " + text(record.name) +
                                      " is defined again with different content (first on line " +
                                      std::to_string(set.record->line) + ")");
            }
            continue;
        }
        set.record = &record;
        set.name = entry->first;
        m_newSetOrder.push_back(&set);
    }
}

void DictionaryBuilder::checkSameSet(const SetRecord& record,
                                     const MetaMetadataSet& existing) const {
    const std::string parent = existing.parent() == nullptr
                                   ? std::string()
                                   : Utils::wstringToString(existing.parent()->name());
    const char* field = nullptr;
    if (record.kind != existing.kind()) {
        field = "kind (set or pack)";
    } else if (record.key.has_value() != existing.hasKey() ||
               (record.key && *record.key != existing.key())) {
        field = "key";
    } else if (record.parent != parent) {
        field = "parent";
    } else if (record.abstract != existing.isAbstract() ||
               record.structural != existing.isStructural()) {
        field = "abstract or structural flag";
    } else if ((!record.xmlTag.empty() &&
                widen(record.xmlTag) != *existing.property(u"XMLTagName")) ||
               (!record.xmlPrefix.empty() &&
                widen(record.xmlPrefix) != *existing.property(u"XMLDefaultPrefix")) ||
               (!record.xmlNamespace.empty() &&
                widen(record.xmlNamespace) != *existing.property(u"XMLNamespaceURI"))) {
        field = "XML name";
    }
    if (field != nullptr) {
        fail(record.line,
             "set " + text(record.name) + " is already defined with a different " + field);
    }
}

void DictionaryBuilder::checkKeys() {
    std::map<KLV::Key, const NewSet*> seen;
    for (const NewSet* set : m_newSetOrder) {
        const SetRecord& record = *set->record;
        if (!record.key) {
            continue;
        }
        const KLV::Key base = record.key->withoutVersion();
        const auto old = m_dictionary.m_setsByBaseKey.find(base);
        if (old != m_dictionary.m_setsByBaseKey.end()) {
            fail(record.line, "key " + record.key->toUtf8() + " of set " + text(record.name) +
                                  " is already the key of set " + text(old->second->name()) +
                                  " (byte 8, the version, is not compared)");
        }
        const auto [entry, added] = seen.emplace(base, set);
        if (!added) {
            fail(record.line, "key " + record.key->toUtf8() + " of set " + text(record.name) +
                                  " is already the key of set " + text(entry->second->name) +
                                  " on line " + std::to_string(entry->second->record->line));
        }
    }
}

void DictionaryBuilder::resolveParents() {
    for (NewSet* set : m_newSetOrder) {
        const SetRecord& record = *set->record;
        if (record.parent.empty()) {
            continue;
        }
        const WString parentName = widen(record.parent);
        MetaMetadataSet::Kind parentKind{};
        const auto entry = m_newSets.find(parentName);
        if (entry != m_newSets.end()) {
            set->newParent = &entry->second;
            parentKind = entry->second.record->kind;
        } else if ((set->oldParent = m_dictionary.findSetByName(parentName)) != nullptr) {
            parentKind = set->oldParent->kind();
        } else {
            fail(record.line,
                 "unknown parent " + text(record.parent) + " of set " + text(record.name));
        }
        if (parentKind != record.kind) {
            fail(record.line, "set " + text(record.name) + " is a " + kindName(record.kind) +
                                  " and cannot inherit from the " + kindName(parentKind) + " " +
                                  text(record.parent));
        }
    }
}

void DictionaryBuilder::orderNewSets() {
    // Walks each chain of new parents up to a set already placed, without recursion, so a
    // long chain cannot exhaust the stack; meeting a set of the current walk is a cycle.
    const std::vector<NewSet*> textOrder = std::move(m_newSetOrder);
    m_newSetOrder.clear();
    for (NewSet* start : textOrder) {
        std::vector<NewSet*> path;
        NewSet* current = start;
        while (current != nullptr && current->visit == Visit::No) {
            current->visit = Visit::Running;
            path.push_back(current);
            current = current->newParent;
        }
        if (current != nullptr && current->visit == Visit::Running) {
            std::string cycle = Utils::wstringToString(current->name);
            const NewSet* step = current;
            do {
                step = step->newParent;
                cycle += " -> " + Utils::wstringToString(step->name);
            } while (step != current);
            fail(current->record->line,
                 "the parents of set " + text(current->name) + " form a cycle: " + cycle);
        }
        for (auto step = path.rbegin(); step != path.rend(); ++step) {
            (*step)->visit = Visit::Done;
            m_newSetOrder.push_back(*step);
        }
    }
}

void DictionaryBuilder::makeSets() {
    for (NewSet* set : m_newSetOrder) {
        const SetRecord& record = *set->record;
        const MetaMetadataSet* parent =
            set->newParent != nullptr ? set->newParent->made : set->oldParent;
        if (parent != nullptr && parent->depth() + 1 > maxDepth) {
            fail(record.line, "set " + text(record.name) + " would be more than " +
                                  std::to_string(maxDepth) + " levels below its root set");
        }
        MetaMetadataSet::Definition definition;
        definition.key = record.key;
        definition.name = set->name;
        definition.kind = record.kind;
        definition.abstract = record.abstract;
        definition.structural = record.structural;
        definition.xmlTagName = record.xmlTag.empty() ? set->name : widen(record.xmlTag);
        if (record.xmlPrefix.empty() != record.xmlNamespace.empty()) {
            fail(record.line,
                 "set " + text(record.name) + " gives only one of xml-prefix and xml-namespace");
        }
        if (!record.xmlPrefix.empty()) {
            definition.xmlPrefix = widen(record.xmlPrefix);
            definition.xmlNamespace = widen(record.xmlNamespace);
        } else if (parent != nullptr) {
            definition.xmlPrefix = parent->m_definition.xmlPrefix;
            definition.xmlNamespace = parent->m_definition.xmlNamespace;
        } else {
            fail(record.line,
                 "set " + text(record.name) +
                     " has no XML prefix and namespace, and no parent to take them from");
        }
        if (!record.key) {
            set->made = &m_stagedKeyless
                             .emplace(std::piecewise_construct, std::forward_as_tuple(set->name),
                                      std::forward_as_tuple(std::move(definition), parent))
                             .first->second;
            continue;
        }
        Dictionary::SetMap& staged =
            record.kind == MetaMetadataSet::Kind::Pack ? m_stagedPacks : m_stagedSets;
        set->made = &staged
                         .emplace(std::piecewise_construct, std::forward_as_tuple(*record.key),
                                  std::forward_as_tuple(std::move(definition), parent))
                         .first->second;
    }
}

MetaMetadataSet* DictionaryBuilder::findWritableSet(const WString& name) const {
    const auto entry = m_newSets.find(name);
    if (entry != m_newSets.end()) {
        return entry->second.made;
    }
    const auto old = m_dictionary.m_setsByName.find(name);
    return old == m_dictionary.m_setsByName.end() ? nullptr : old->second;
}

void DictionaryBuilder::stageElements() {
    // Element records come grouped by set, so the last look-up is usually the one wanted.
    std::string_view lastName;
    MetaMetadataSet* set = nullptr;
    for (const ElementRecord& record : m_parsed.elements()) {
        if (set == nullptr || record.set != lastName) {
            set = findWritableSet(widen(record.set));
            lastName = record.set;
        }
        if (set == nullptr) {
            fail(record.line,
                 "unknown set " + text(record.set) + " of element " + text(record.name));
        }
        const Types::UniversalLabel base = baseLabel(Types::UniversalLabel(record.ul));
        const MetaElement* existing = findOwn(*set, base);
        MetaElement::Definition definition = elementDefinition(record, *set, existing);
        if (existing != nullptr) {
            if (const char* field = difference(definition, record.collection, *existing)) {
                const unsigned line = lineOf(existing, nullptr);
                fail(record.line,
                     "element " + text(record.name) + " (" + labelText(definition.ul) +
                         ") is already defined in set " + text(set->name()) + " with a different " +
                         field +
                         (line == 0 ? std::string() : " (on line " + std::to_string(line) + ")"));
            }
            continue;
        }
        checkAgainstOthers(record, definition, base);
        addNewElement(record, *set, std::move(definition), base);
    }
}

unsigned DictionaryBuilder::nextOrder(const MetaMetadataSet& set, unsigned line) const {
    unsigned last = 0;
    const auto known = m_lastOrder.find(&set);
    if (known != m_lastOrder.end()) {
        last = known->second;
    }
    for (const MetaElement* element : set.ownElements()) {
        last = std::max(last, element->order());
    }
    if (last >= 99) {
        fail(line, "set " + text(set.name()) +
                       " has no order left after 99; give the element "
                       "an order");
    }
    return last + 1;
}

const MetaElement* DictionaryBuilder::findOwn(const MetaMetadataSet& set,
                                              const Types::UniversalLabel& base) const {
    const auto added = m_newOwn.find({&set, base});
    if (added != m_newOwn.end()) {
        return added->second;
    }
    for (const MetaElement* element : set.ownElements()) {
        if (baseLabel(element->ul()) == base) {
            return element;
        }
    }
    return nullptr;
}

MetaElement::Definition DictionaryBuilder::elementDefinition(const ElementRecord& record,
                                                             const MetaMetadataSet& set,
                                                             const MetaElement* existing) {
    MetaElement::Definition definition;
    definition.ul = Types::UniversalLabel(record.ul);
    definition.name = widen(record.name);
    definition.staticLocalTag = record.localTag;
    definition.valueType = record.type;
    definition.referenceKind = record.reference;
    definition.targetSetName = widen(record.target);
    definition.requiredStatus = record.required;
    // Cells left out take the existing definition's value, so that loading a text twice is
    // harmless, and otherwise the set's defaults.
    const MetaElement::Definition* old = existing == nullptr ? nullptr : &existing->definition();
    if (record.order) {
        definition.order = *record.order;
    } else if (old != nullptr) {
        definition.order = old->order;
    } else {
        definition.order = nextOrder(set, record.line);
    }
    definition.schemaIndex = record.schemaIndex ? *record.schemaIndex
                             : old != nullptr   ? old->schemaIndex
                                                : definition.order + 100 * set.depth();
    if (record.xmlPrefix.empty() != record.xmlNamespace.empty()) {
        fail(record.line,
             "element " + text(record.name) + " gives only one of xml-prefix and xml-namespace");
    }
    definition.xmlTagName = !record.xmlTag.empty() ? widen(record.xmlTag)
                            : old != nullptr       ? old->xmlTagName
                                                   : definition.name;
    if (!record.xmlPrefix.empty()) {
        definition.xmlPrefix = widen(record.xmlPrefix);
        definition.xmlNamespace = widen(record.xmlNamespace);
    } else {
        definition.xmlPrefix = old != nullptr ? old->xmlPrefix : set.m_definition.xmlPrefix;
        definition.xmlNamespace =
            old != nullptr ? old->xmlNamespace : set.m_definition.xmlNamespace;
    }
    return definition;
}

void DictionaryBuilder::checkAgainstOthers(const ElementRecord& record,
                                           const MetaElement::Definition& definition,
                                           const Types::UniversalLabel& base) const {
    const MetaElement* other = nullptr;
    const auto added = m_newByBaseLabel.find(base);
    if (added != m_newByBaseLabel.end()) {
        other = added->second;
    } else if (const auto old = m_dictionary.m_elementsByBaseLabel.find(base);
               old != m_dictionary.m_elementsByBaseLabel.end()) {
        other = old->second;
    }
    if (other != nullptr) {
        const auto where = [&] {
            return "label " + labelText(definition.ul) + " of element " + text(record.name) +
                   " is already defined for element " + text(other->name()) + " in set " +
                   text(other->definingSet().name());
        };
        if (other->ul() != definition.ul) {
            fail(record.line, where() + " as " + labelText(other->ul()) +
                                  ", which differs only in byte 8 (the version); use the same "
                                  "label");
        }
        if (definition.valueType != other->valueType() ||
            record.collection != collectionOf(*other) ||
            record.reference != other->referenceKind()) {
            fail(record.line,
                 where() + " as " +
                     shape(other->valueType(), collectionOf(*other), other->referenceKind()) +
                     ", not " + shape(definition.valueType, record.collection, record.reference) +
                     "; all definitions of a label must agree");
        }
        const auto& otherTag = other->definition().staticLocalTag;
        if (otherTag && definition.staticLocalTag && *otherTag != *definition.staticLocalTag) {
            fail(record.line, where() + " with local tag " + tagText(*otherTag) + ", not " +
                                  tagText(*definition.staticLocalTag));
        }
    }
    checkTag(record, definition, base);
}

void DictionaryBuilder::checkTag(const ElementRecord& record,
                                 const MetaElement::Definition& definition,
                                 const Types::UniversalLabel& base) const {
    if (definition.staticLocalTag) {
        const std::uint16_t tag = *definition.staticLocalTag;
        const MetaElement* owner = nullptr;
        if (const auto entry = m_newByTag.find(tag); entry != m_newByTag.end()) {
            owner = entry->second;
        } else if (const auto old = m_dictionary.m_elementsByTag.find(tag);
                   old != m_dictionary.m_elementsByTag.end()) {
            owner = old->second;
        }
        if (owner != nullptr && baseLabel(owner->ul()) != base) {
            fail(record.line, "local tag " + tagText(tag) + " of element " + text(record.name) +
                                  " already belongs to element " + text(owner->name()) + " (" +
                                  labelText(owner->ul()) + ") in set " +
                                  text(owner->definingSet().name()));
        }
    }
}

void DictionaryBuilder::addNewElement(const ElementRecord& record, MetaMetadataSet& set,
                                      MetaElement::Definition definition,
                                      const Types::UniversalLabel& base) {
    const MetaMetadataSet* target = nullptr;
    if (definition.referenceKind != MetaElement::ReferenceKind::None) {
        target = findWritableSet(definition.targetSetName);
        if (target == nullptr) {
            fail(record.line,
                 "unknown target set " + text(record.target) + " of element " + text(record.name));
        }
        if (target->kind() == MetaMetadataSet::Kind::Pack) {
            fail(record.line, "target " + text(record.target) + " of element " + text(record.name) +
                                  " is a pack; a reference targets a local set");
        }
    }
    std::unique_ptr<MetaElement> element;
    if (record.collection) {
        element =
            std::make_unique<MetaCollectionElement>(std::move(definition), set, *record.collection);
    } else {
        element = std::make_unique<MetaElement>(std::move(definition), set);
    }
    element->m_targetSet = target;
    const MetaElement* made = element.get();
    m_newOwn.emplace(std::make_pair(&set, base), made);
    m_newByBaseLabel.emplace(base, made);
    if (made->definition().staticLocalTag) {
        m_newByTag.emplace(*made->definition().staticLocalTag, made);
    }
    unsigned& last = m_lastOrder[&set];
    last = std::max(last, made->order());
    m_newElements.push_back({&set, std::move(element), record.line});
}

void DictionaryBuilder::resolveTables() {
    std::vector<MetaMetadataSet*> sets;
    for (Dictionary::SetMap* map :
         {&m_dictionary.m_sets, &m_dictionary.m_packs, &m_stagedSets, &m_stagedPacks}) {
        for (auto& entry : *map) {
            sets.push_back(&entry.second);
        }
    }
    for (auto* map : {&m_dictionary.m_keylessSets, &m_stagedKeyless}) {
        for (auto& entry : *map) {
            sets.push_back(&entry.second);
        }
    }
    std::unordered_map<const MetaMetadataSet*, std::vector<const MetaElement*>> added;
    for (const NewElement& entry : m_newElements) {
        added[entry.set].push_back(entry.element.get());
    }
    m_resolver.resolve(std::move(sets), added);
}

unsigned DictionaryBuilder::lineOf(const MetaElement* first, const MetaElement* second) const {
    // Only messages need the line of an element, so a scan is good enough.
    for (const NewElement& entry : m_newElements) {
        if (entry.element.get() == first || entry.element.get() == second) {
            return entry.line;
        }
    }
    return 0;
}

void DictionaryBuilder::commit() {
    for (const NewSet* set : m_newSetOrder) {
        m_dictionary.m_setsByName.emplace(set->name, set->made);
        if (set->made->hasKey()) {
            m_dictionary.m_setsByBaseKey.emplace(set->made->key().withoutVersion(), set->made);
        }
        m_dictionary.indexTagName(*set->made);
    }
    // Merging moves the map nodes, so the staged sets keep their addresses.
    m_dictionary.m_sets.merge(m_stagedSets);
    m_dictionary.m_packs.merge(m_stagedPacks);
    m_dictionary.m_keylessSets.merge(m_stagedKeyless);
    for (NewElement& entry : m_newElements) {
        const MetaElement& element = *entry.element;
        entry.set->m_ownedElements.push_back(std::move(entry.element));
        indexElement(m_dictionary, element);
    }
    m_dictionary.m_elementDefinitionCount += m_newElements.size();
    for (auto& [set, tables] : m_resolver.tables()) {
        set->m_ownElements = std::move(tables.own);
        set->m_elements = std::move(tables.elements);
        set->m_bySchemaIndex = std::move(tables.bySchemaIndex);
        set->m_byTag = std::move(tables.byTag);
    }
}

void DictionaryBuilder::indexElement(Dictionary& dictionary, const MetaElement& element) {
    const auto [entry, added] =
        dictionary.m_elementsByBaseLabel.emplace(baseLabel(element.ul()), &element);
    if (added) {
        dictionary.m_elements.emplace(element.ul(), &element);
    } else if (preference(element) > preference(*entry->second)) {
        entry->second = &element;
        dictionary.m_elements[element.ul()] = &element;
    }
    if (element.definition().staticLocalTag) {
        const auto [tag, tagAdded] =
            dictionary.m_elementsByTag.emplace(*element.definition().staticLocalTag, &element);
        if (!tagAdded && preference(element) > preference(*tag->second)) {
            tag->second = &element;
        }
    }
}

} // namespace Vellum::MetaMetadata
