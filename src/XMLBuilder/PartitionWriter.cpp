#include "XMLBuilder/PartitionWriter.h"

#include "XMLBuilder/DarkMetadataWriter.h"
#include "XMLBuilder/DocumentLayout.h"
#include "XMLBuilder/NullMarkupSink.h"
#include "XMLBuilder/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLBuilder/WriterContext.h"
#include "XMLBuilder/XMLNames.h"

#include "Vellum/Exceptions/Throw.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/Structural/StructuralMetadataKeys.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace Vellum::XMLBuilder {
namespace {

std::mutex& exportLock() {
    static std::mutex lock;
    return lock;
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
        // Each set not reached from the first Preface and not yet written starts a group of
        // its own, in stored order.
        std::vector<const Metadata::MetadataSet*> order;
        const unsigned floatingCount = partition.calculateSerializationOrder(order, true, false);
        for (auto it = order.end() - floatingCount; it != order.end(); ++it) {
            writeFloating(**it);
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
