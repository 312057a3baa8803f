#include "MetaMetadata/SetTableResolver.h"

#include "MetaMetadata/DictionaryParser.h"

#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Utils/StringConversion.h"

#include <algorithm>
#include <tuple>

namespace Vellum::MetaMetadata {
namespace {

// Far above any real dictionary (the built-in one lists a few thousand); stops a hostile
// text from exhausting memory through wide inheritance.
constexpr std::size_t maxEntries = 4'000'000;

std::string text(const WString& value) {
    return "'" + Utils::wstringToString(value) + "'";
}

} // namespace

SetTableResolver::SetTableResolver(std::string sourceName, LineOf lineOf)
    : m_sourceName(std::move(sourceName))
    , m_lineOf(std::move(lineOf)) {}

void SetTableResolver::fail(const MetaElement* first, const MetaElement* second,
                            const std::string& message) const {
    throwAtLine(m_sourceName, m_lineOf(first, second), message);
}

void SetTableResolver::resolve(
    std::vector<MetaMetadataSet*> sets,
    const std::unordered_map<const MetaMetadataSet*, std::vector<const MetaElement*>>& added) {
    std::stable_sort(
        sets.begin(), sets.end(),
        [](const MetaMetadataSet* a, const MetaMetadataSet* b) { return a->depth() < b->depth(); });
    std::unordered_map<const MetaMetadataSet*, std::size_t> index;
    m_tables.clear();
    std::size_t entries = 0;
    m_tables.reserve(sets.size());
    for (MetaMetadataSet* set : sets) {
        Tables tables;
        if (set->parent() != nullptr) {
            const Tables& inherited = m_tables[index.at(set->parent())].second;
            tables.elements = inherited.elements;
            tables.bySchemaIndex = inherited.bySchemaIndex;
            tables.byTag = inherited.byTag;
        }
        tables.own = set->ownElements();
        const auto extra = added.find(set);
        if (extra != added.end()) {
            tables.own.insert(tables.own.end(), extra->second.begin(), extra->second.end());
        }
        fill(*set, tables);
        entries += tables.elements.size();
        if (entries > maxEntries) {
            VELLUM_THROW(InvalidFormat, m_sourceName + ": the sets would list more than " +
                                            std::to_string(maxEntries) +
                                            " elements in all, counting inherited ones");
        }
        index.emplace(set, m_tables.size());
        m_tables.emplace_back(set, std::move(tables));
    }
}

void SetTableResolver::fill(const MetaMetadataSet& set, Tables& tables) const {
    std::sort(tables.own.begin(), tables.own.end(), [](const MetaElement* a, const MetaElement* b) {
        return a->order() != b->order() ? a->order() < b->order() : a->ul() < b->ul();
    });
    for (const MetaElement* element : tables.own) {
        const auto [entry, added] = tables.elements.emplace(element->ul(), element);
        if (!added) {
            fail(element, entry->second,
                 "set " + text(set.name()) + " would have the label " +
                     Utils::wstringToString(element->ul().toString()) + " twice: as " +
                     text(element->name()) + " of set " + text(element->definingSet().name()) +
                     " and as " + text(entry->second->name()) + " of set " +
                     text(entry->second->definingSet().name()));
        }
        tables.bySchemaIndex.push_back(element);
        if (element->definition().staticLocalTag) {
            tables.byTag.emplace_back(*element->definition().staticLocalTag, element);
        }
    }
    std::sort(tables.bySchemaIndex.begin(), tables.bySchemaIndex.end(),
              [](const MetaElement* a, const MetaElement* b) {
                  return a->schemaIndex() != b->schemaIndex() ? a->schemaIndex() < b->schemaIndex()
                                                              : a->ul() < b->ul();
              });
    std::sort(tables.byTag.begin(), tables.byTag.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    checkNames(set, tables);
}

void SetTableResolver::checkNames(const MetaMetadataSet& set, const Tables& tables) const {
    // The XML reader finds a set's elements by qualified name, so none may repeat in a set.
    std::vector<const MetaElement*> byName = tables.bySchemaIndex;
    const auto key = [](const MetaElement* element) {
        // Tag names differ early, namespaces mostly agree: comparing tags first is cheaper.
        return std::tie(element->definition().xmlTagName, element->definition().xmlNamespace);
    };
    std::sort(byName.begin(), byName.end(),
              [&key](const MetaElement* a, const MetaElement* b) { return key(a) < key(b); });
    const auto repeated = std::adjacent_find(
        byName.begin(), byName.end(),
        [&key](const MetaElement* a, const MetaElement* b) { return key(a) == key(b); });
    if (repeated != byName.end()) {
        const MetaElement* first = *repeated;
        const MetaElement* second = *(repeated + 1);
        fail(first, second,
             "set " + text(set.name()) + " would have two elements with the XML name " +
                 text(first->definition().xmlPrefix + u":" + first->definition().xmlTagName) +
                 ": one of set " + text(first->definingSet().name()) + " and one of set " +
                 text(second->definingSet().name()));
    }
}

} // namespace Vellum::MetaMetadata
