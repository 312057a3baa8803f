#include "XMLBuilder/ToXMLMetadataSetVisitor.h"

#include "XMLBuilder/DarkMetadataWriter.h"
#include "XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/Vocabulary.h"

#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/DarkParsedGroup.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/SimpleElement.h"

#include <algorithm>
#include <vector>

namespace Vellum::XMLBuilder {
namespace {

/// The lists of one set being written, given back when it is done.
class ScratchLease {
public:
    explicit ScratchLease(XMLNames& names)
        : m_names(names)
        , m_scratch(names.openScratch()) {}
    ScratchLease(const ScratchLease&) = delete;
    ScratchLease& operator=(const ScratchLease&) = delete;
    ~ScratchLease() { m_names.closeScratch(); }

    XMLNames::Scratch& scratch() const noexcept { return m_scratch; }

private:
    XMLNames& m_names;
    XMLNames::Scratch& m_scratch;
};

} // namespace

ToXMLMetadataSetVisitor::~ToXMLMetadataSetVisitor() = default;

void ToXMLMetadataSetVisitor::visit(const Metadata::MetadataSet& set) {
    TargetList pending;
    write(set, m_parent, pending);
    // Strong targets without typed references: each written under the document element
    // after the set that names it, its own targets after it (depth first, as met).
    std::reverse(pending.begin(), pending.end());
    TargetList targets;
    while (!pending.empty()) {
        const Metadata::MetadataSet* target = pending.back();
        pending.pop_back();
        if (!pending.empty()) {
            m_context.visited.prefetch(pending.back());
            __builtin_prefetch(pending.back());
        }
        targets.clear();
        write(*target, m_context.layout.rootLevel(), targets);
        pending.insert(pending.end(), targets.rbegin(), targets.rend());
    }
}

void ToXMLMetadataSetVisitor::write(const Metadata::MetadataSet& set, MarkupSink& sink,
                                    TargetList& targets) {
    if (!m_context.visited.insert(&set)) {
        return;
    }
    if (const MetaMetadata::MetaMetadataSet* definition = set.definition()) {
        XMLNames::SetName& name = m_context.names.set(*definition);
        if (!name.valid) {
            return; // a definition without an XML name cannot be written
        }
        m_context.names.enter(name);
        sink.startElement(name.namespaceName, name.qualifiedName);
        if (set.key() != definition->key()) {
            // Stored under another form of its definition's key (version byte, item length
            // coding): the import makes it under that key again.
            m_context.names.enterGroups();
            sink.attribute(m_context.namespaces().namespaceOf(Vocabulary::groupsPrefix),
                           Vocabulary::key, set.key().toString());
        }
        writeElements(set, sink, targets);
        sink.endElement();
    } else if (dynamic_cast<const Metadata::DarkParsedGroup*>(&set) != nullptr) {
        m_context.names.enterTypes();
        m_context.names.enterGroups();
        // The container follows the last set under the document element; the set's items
        // go in with their labels or local tags, so that it imports as the same set.
        DocumentLayout& layout = m_context.layout;
        layout.moveContainerToEnd();
        MarkupSink& container = layout.floatingContainer();
        DarkMetadataWriter::startParsedGroup(set, container, m_context.names);
        writeElements(set, container, targets);
        container.endElement();
    }
}

void ToXMLMetadataSetVisitor::writeElements(const Metadata::MetadataSet& set, MarkupSink& sink,
                                            TargetList& targets) {
    XMLNames& names = m_context.names;
    const ScratchLease lease(names);
    std::vector<XMLNames::Entry>& order = lease.scratch().order;
    // Elements the definition does not place (in stored order), then its own by "SchemaIndex"
    // (equal ones in label order). The sets of one definition share that order, worked out
    // once; a set whose elements are not those of its definition's plan is ordered here.
    for (auto it = set.invalidBegin(); it != set.invalidEnd(); ++it) {
        order.push_back({*it, &names.item(**it)});
    }
    const std::size_t invalid = order.size();
    std::vector<const Metadata::Element*>& elements = lease.scratch().elements;
    const XMLNames::Plan* plan = set.definition() != nullptr ? &names.plan(set) : nullptr;
    if (plan != nullptr && plan->attributes.size() == set.validCount()) {
        for (const auto& [label, element] : set) {
            if (element->metaAttribute().get() != plan->attributes[elements.size()]) {
                break;
            }
            elements.push_back(element);
        }
    }
    if (plan != nullptr && elements.size() == plan->attributes.size()) {
        for (const auto& [position, item] : plan->ordered) {
            order.push_back({elements[position], item});
        }
    } else {
        for (const auto& [label, element] : set) {
            const XMLNames::Item& item = names.item(*element);
            if (item.ordered) {
                order.push_back({element, &item});
            }
        }
        std::stable_sort(order.begin() + static_cast<std::ptrdiff_t>(invalid), order.end(),
                         [](const XMLNames::Entry& a, const XMLNames::Entry& b) {
                             return a.item->orderKey < b.item->orderKey;
                         });
    }

    // Identity elements are attributes of the set element; a later one of the same name
    // replaces an earlier one.
    ToXMLElementVisitor::ElementList& identities = lease.scratch().identities;
    for (const XMLNames::Entry& entry : order) {
        if (!entry.item->identityTag || !names.wouldBeIdentity(*entry.item)) {
            continue;
        }
        if (entry.element->isEmpty()) {
            // The import gives a set without "rp210:InstanceUID" a fresh identifier; an
            // empty one keeps a set stored without its identifier as it is.
            const XMLNames::ElementName& name = names.name(*entry.item);
            if (name.qualifiedName == Vocabulary::instanceUID && set.instanceUID() == nullptr) {
                sink.attribute(name.namespaceName, name.qualifiedName, std::u16string_view());
            }
            continue;
        }
        const auto* simple = dynamic_cast<const Metadata::SimpleElement*>(entry.element);
        if (simple == nullptr) {
            continue;
        }
        const XMLNames::ElementName& name = names.name(*entry.item);
        ToXMLBaseTypeVisitor::AttributeBuffer buffer;
        sink.attribute(name.namespaceName, name.qualifiedName,
                       m_context.writesValues
                           ? ToXMLBaseTypeVisitor::attributeText(*simple->value(), buffer)
                           : std::u16string_view());
        identities.push_back(entry.element);
    }

    ToXMLElementVisitor writer(sink, m_context, identities, targets);
    for (const XMLNames::Entry& entry : order) {
        if (entry.item->extension()) {
            writer.write(entry);
        }
    }
    writer.closeExtensionElements();
    for (const XMLNames::Entry& entry : order) {
        if (!entry.item->extension()) {
            writer.write(entry);
        }
    }
}

} // namespace Vellum::XMLBuilder
