#include "XMLBuilder/PartitionWriter.h"

#include "XMLBuilder/DarkMetadataWriter.h"
#include "XMLBuilder/DocumentLayout.h"
#include "XMLBuilder/NullMarkupSink.h"
#include "XMLBuilder/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLBuilder/WriterContext.h"
#include "XMLBuilder/XMLNames.h"

#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/ReferenceCollectionElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/Structural/StructuralMetadataKeys.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <mutex>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Vellum::XMLBuilder {
namespace {

std::mutex& exportLock() {
    static std::mutex lock;
    return lock;
}

using SetList = std::vector<const Metadata::MetadataSet*>;

// Calls `follow` with each set a strong reference of `set` leads the writer to, as
// ToXMLElementVisitor follows them: every set with the target's identifier in the flat layout,
// the first one when the dictionary describes it with typed references; with
// `structuralTargetsOnly`, only where that first one is a structural set.
template <typename Follow>
void forEachFollowedTarget(const Metadata::MetadataSet& set, const WriterContext& context,
                           const Follow& follow) {
    const auto add = [&](const Types::Reference& reference) {
        const InstanceIndex::Sets targets = context.instances.find(reference.uuid());
        if (targets.empty() || !context.follows(reference, *targets.front())) {
            return;
        }
        if (!context.typedReferences) {
            std::for_each(targets.begin(), targets.end(), follow);
        } else if (targets.front()->definition() != nullptr) {
            follow(targets.front());
        }
    };
    for (const Metadata::Element* element : set.serializationOrder()) {
        if (const auto* single = dynamic_cast<const Metadata::ReferenceElement*>(element)) {
            if (single->value() != nullptr) {
                add(*single->value());
            }
        } else if (const auto* collection =
                       dynamic_cast<const Metadata::ReferenceCollectionElement*>(element)) {
            for (std::uint32_t i = 0; i < collection->size(); ++i) {
                add(collection->referenceAt(i));
            }
        }
    }
}

// The components (sets that all reach one another) of the graph `edges` over sets 0..n-1, by
// Tarjan's algorithm without recursion, so that hostile chains cannot exhaust the stack.
std::vector<std::size_t> components(const std::vector<std::vector<std::size_t>>& edges) {
    constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
    const std::size_t count = edges.size();
    std::vector<std::size_t> found(count, none);
    std::vector<std::size_t> low(count);
    std::vector<std::size_t> component(count, none);
    std::vector<std::size_t> open;                          // sets without a component yet
    std::vector<std::pair<std::size_t, std::size_t>> calls; // set, next edge
    std::size_t next = 0;
    std::size_t made = 0;
    const auto enter = [&](std::size_t set) {
        found[set] = low[set] = next++;
        open.push_back(set);
        calls.emplace_back(set, 0);
    };
    for (std::size_t first = 0; first < count; ++first) {
        if (found[first] != none) {
            continue;
        }
        enter(first);
        while (!calls.empty()) {
            const std::size_t set = calls.back().first;
            const std::size_t edge = calls.back().second++;
            if (edge < edges[set].size()) {
                const std::size_t target = edges[set][edge];
                if (found[target] == none) {
                    enter(target);
                } else if (component[target] == none) {
                    low[set] = std::min(low[set], found[target]);
                }
                continue;
            }
            calls.pop_back();
            if (!calls.empty()) {
                low[calls.back().first] = std::min(low[calls.back().first], low[set]);
            }
            if (low[set] == found[set]) {
                std::size_t member = none;
                while (member != set) {
                    member = open.back();
                    open.pop_back();
                    component[member] = made;
                }
                ++made;
            }
        }
    }
    return component;
}

// The sets the floating groups start from, in stored order: of the sets not reached from the
// first Preface and not yet written, those no other one leads to, and of each cycle nothing
// else leads to, the set with the smallest identifier. The flat layout writes the rest of a
// group under the document element, where it may come ahead of the container and so be stored
// ahead of the set that holds it after an import; starting from these sets rather than from
// the first in stored order gives the same groups again.
SetList floatingGroupStarts(const Metadata::PartitionMetadata& partition,
                            const WriterContext& context) {
    SetList order;
    const unsigned floatingCount = partition.calculateSerializationOrder(order, true, false);
    SetList sets;
    std::unordered_map<const Metadata::MetadataSet*, std::size_t> positions;
    for (auto it = order.end() - floatingCount; it != order.end(); ++it) {
        if (!context.visited.contains(*it)) {
            positions.emplace(*it, sets.size());
            sets.push_back(*it);
        }
    }
    std::vector<std::vector<std::size_t>> edges(sets.size());
    for (std::size_t i = 0; i < sets.size(); ++i) {
        forEachFollowedTarget(*sets[i], context, [&](const Metadata::MetadataSet* target) {
            const auto found = positions.find(target);
            if (found != positions.end()) {
                edges[i].push_back(found->second);
            }
        });
    }
    const std::vector<std::size_t> component = components(edges);
    std::vector<bool> entered(sets.size(), false);
    for (std::size_t i = 0; i < sets.size(); ++i) {
        for (const std::size_t target : edges[i]) {
            if (component[target] != component[i]) {
                entered[component[target]] = true;
            }
        }
    }
    // Only a set that is referred to, and so has an identifier, shares its component.
    constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
    std::vector<std::size_t> start(sets.size(), none);
    for (std::size_t i = 0; i < sets.size(); ++i) {
        std::size_t& first = start[component[i]];
        if (!entered[component[i]] &&
            (first == none || *sets[i]->instanceUID() < *sets[first]->instanceUID())) {
            first = i;
        }
    }
    std::vector<std::size_t> chosen;
    std::copy_if(start.begin(), start.end(), std::back_inserter(chosen),
                 [](std::size_t i) { return i != none; });
    std::sort(chosen.begin(), chosen.end());
    SetList out;
    for (const std::size_t i : chosen) {
        out.push_back(sets[i]);
    }
    return out;
}

} // namespace

const Metadata::MetadataSet*
PartitionWriter::firstPreface(const Metadata::PartitionMetadata& partition) {
    const auto prefaces = partition.find(Metadata::Structural::StructuralMetadataKeys::preface());
    return prefaces.empty() ? nullptr : prefaces.front();
}

void PartitionWriter::write(const Metadata::PartitionMetadata& partition,
                            const Metadata::MetadataSet& start, bool typedReferences,
                            bool structuralTargetsOnly, MarkupSink& sink) {
    const std::lock_guard<std::mutex> hold(exportLock());
    // The document element declares the namespaces before anything else is written, so a
    // first walk learns them; it also meets any name the dictionary gets wrong before a
    // byte goes out.
    const InstanceIndex instances(partition);
    SetRecord visited(partition.sets().size());
    NullMarkupSink nothing;
    const NamespaceRecord declared = pass(partition, instances, visited, start, typedReferences,
                                          structuralTargetsOnly, nothing, nullptr);
    const NamespaceRecord used = pass(partition, instances, visited, start, typedReferences,
                                      structuralTargetsOnly, sink, &declared);
    VELLUM_CHECK(used.entries() == declared.entries(),
                 "the two walks of the export met different namespaces");
}

NamespaceRecord PartitionWriter::pass(const Metadata::PartitionMetadata& partition,
                                      const InstanceIndex& instances, SetRecord& visited,
                                      const Metadata::MetadataSet& start, bool typedReferences,
                                      bool structuralTargetsOnly, MarkupSink& sink,
                                      const NamespaceRecord* declared) {
    const WString s377m(Vocabulary::s377mNamespace);
    NamespaceRecord namespaces;
    namespaces.enter(s377m, Vocabulary::s377mPrefix);
    XMLNames names(namespaces);
    const bool writesValues = declared != nullptr;

    sink.startElement(s377m, WString(Vocabulary::s377mPrefix) + Vocabulary::metadataSetsSuffix);
    if (declared != nullptr) {
        sink.attribute(Vocabulary::xmlnsNamespace, WString(u"xmlns:") + Vocabulary::s377mPrefix,
                       s377m);
        for (const auto& [namespaceName, prefix] : declared->entries()) {
            if (namespaceName != s377m) {
                sink.attribute(Vocabulary::xmlnsNamespace, u"xmlns:" + prefix, namespaceName);
            }
        }
    }
    DocumentLayout layout(sink, !writesValues);

    visited.clear();
    const WriterContext main{partition,    instances, typedReferences, structuralTargetsOnly,
                             writesValues, names,     visited,         layout};
    ToXMLMetadataSetVisitor startWriter(layout.rootLevel(), main);
    start.accept(startWriter);

    if (partition.darkCount() != 0) {
        MarkupSink& container = layout.floatingContainer();
        for (auto it = partition.darkBegin(); it != partition.darkEnd(); ++it) {
            DarkMetadataWriter::writeDarkMetadataSet(**it, container, names, writesValues);
        }
    }

    // The floating pass knows what the main pass wrote, so that no set is written twice.
    // Every set written is one of the partition's, the start set too when it is one.
    const auto& sets = partition.sets();
    const bool allWritten =
        visited.size() == sets.size() && std::find(sets.begin(), sets.end(), &start) != sets.end();
    if (!allWritten) {
        const WriterContext floating{
            partition,    instances, typedReferences, structuralTargetsOnly,
            writesValues, names,     visited,         layout};
        const auto writeFloating = [&](const Metadata::MetadataSet& set) {
            if (!visited.contains(&set)) {
                ToXMLMetadataSetVisitor writer(layout.floatingContainer(), floating);
                set.accept(writer);
            }
        };
        // The sets not reached from the first Preface and not yet written, group by group.
        for (const Metadata::MetadataSet* set : floatingGroupStarts(partition, floating)) {
            writeFloating(*set);
        }
        // Then every set no pass reached: behind a reference the options do not follow,
        // sharing an identifier with a set already written, or without an identifier.
        for (const Metadata::MetadataSet* set : partition.sets()) {
            writeFloating(*set);
        }
    }
    layout.finish();
    sink.endElement();
    return namespaces;
}

} // namespace Vellum::XMLBuilder
