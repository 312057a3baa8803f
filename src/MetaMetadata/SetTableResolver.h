#ifndef VELLUM_SRC_METAMETADATA_SETTABLERESOLVER_H
#define VELLUM_SRC_METAMETADATA_SETTABLERESOLVER_H

#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Vellum::MetaMetadata {

/// Works out the element tables of sets: each set's own elements plus everything its
/// ancestors have, by label, by schema index and by static tag. The tables are built aside;
/// the caller moves them into the sets once nothing is wrong.
class SetTableResolver {
public:
    /// The tables of one set.
    struct Tables {
        MetaMetadataSet::ElementList own;
        MetaMetadataSet::ElementMap elements;
        MetaMetadataSet::ElementList bySchemaIndex;
        std::vector<std::pair<std::uint16_t, const MetaElement*>> byTag;
    };

    /// The source line of one of two elements behind a fault (0 if neither has one).
    using LineOf = std::function<unsigned(const MetaElement*, const MetaElement*)>;

    /// `sourceName` and `lineOf` name the text in messages.
    SetTableResolver(std::string sourceName, LineOf lineOf);

    /// Builds the tables of every set in `sets`, which must hold each set's ancestors too.
    /// `added` lists elements that join a set's own ones. Throws InvalidFormat, naming the
    /// source and line, if a set would have a label or an XML name twice.
    void resolve(
        std::vector<MetaMetadataSet*> sets,
        const std::unordered_map<const MetaMetadataSet*, std::vector<const MetaElement*>>& added);

    /// The tables, one entry per set, ancestors before descendants.
    std::vector<std::pair<MetaMetadataSet*, Tables>>& tables() noexcept { return m_tables; }

private:
    [[noreturn]] void fail(const MetaElement* first, const MetaElement* second,
                           const std::string& message) const;
    void fill(const MetaMetadataSet& set, Tables& tables) const;
    void checkNames(const MetaMetadataSet& set, const Tables& tables) const;

    std::string m_sourceName;
    LineOf m_lineOf;
    std::vector<std::pair<MetaMetadataSet*, Tables>> m_tables;
};

} // namespace Vellum::MetaMetadata

#endif
