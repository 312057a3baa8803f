#include "XMLBuilder/ToXMLElementVisitor.h"

#include "Utils/HexText.h"
#include "XMLBuilder/StoredBytes.h"
#include "XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "XMLBuilder/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/ToXMLReferenceVisitor.h"
#include "XMLBuilder/Vocabulary.h"

#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/ArrayElement.h"
#include "Vellum/Metadata/BatchElement.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceBatchElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/LocalTag.h"
#include "Vellum/Types/Reference.h"

#include <algorithm>

namespace Vellum::XMLBuilder {
namespace {

// The item size of a collection of references: one UUID.
constexpr std::uint32_t referenceSize = 16;

// The local name of a collection item's element.
constexpr std::u16string_view itemLocalName = Vocabulary::itemElement;

std::u16string_view localNameOf(const WString& qualifiedName) {
    const std::size_t colon = qualifiedName.find(u':');
    return std::u16string_view(qualifiedName).substr(colon == WString::npos ? 0 : colon + 1);
}

} // namespace

ToXMLElementVisitor::~ToXMLElementVisitor() = default;

void ToXMLElementVisitor::write(const XMLNames::Entry& entry) {
    m_item = entry.item;
    entry.element->accept(*this);
    m_item = nullptr;
}

void ToXMLElementVisitor::closeExtensionElements() {
    if (m_extensionOpen) {
        m_sink.endElement();
        m_extensionOpen = false;
    }
}

const WString& ToXMLElementVisitor::startProperty(const XMLNames::Item& item,
                                                  const XMLNames::ElementName& name) {
    NamespaceRecord& namespaces = m_context.namespaces();
    // An element the dictionary does not describe takes the namespace bound to its prefix.
    if (item.meta == nullptr) {
        m_unknownNamespace = namespaces.namespaceOf(name.prefix);
    }
    const WString& space = item.meta != nullptr ? name.namespaceName : m_unknownNamespace;
    if (item.extension() && !m_extensionOpen) {
        // Elements the dictionary does not place in this set go to the set's extension
        // container, which comes before the set's own elements.
        m_sink.startElement(Vocabulary::groupsNamespace, Vocabulary::extensionElements);
        m_extensionOpen = true;
    }
    m_sink.startElement(space, name.qualifiedName);
    if (item.meta != nullptr) {
        // A misplaced element whose name the dictionary gives to another element first keeps
        // its label, so that the import reads it as this one.
        if (item.extension() &&
            m_context.names.namesAnother(*item.meta,
                                         *m_context.partition.partitionDictionary().dictionary())) {
            m_sink.attribute(namespaces.namespaceOf(Vocabulary::groupsPrefix),
                             Vocabulary::universalLabel, item.meta->ul().toString());
        }
        return space;
    }
    // An unknown element is identified by its local tag and the label the primer gives it.
    // An element whose tag the primer does not know is identified by its tag alone, a
    // dynamic one too: without it the import could not place the element.
    const WString groups = namespaces.namespaceOf(Vocabulary::groupsPrefix);
    const Types::LocalTag tag(item.localTagText, Types::DottedHex);
    const Types::UniversalLabel* label = m_context.partition.partitionDictionary().lookup(tag);
    if (tag.isStaticLocalTag() || label == nullptr) {
        m_sink.attribute(groups, Vocabulary::staticLocalTag, item.localTagText);
    }
    if (label != nullptr) {
        m_sink.attribute(groups, Vocabulary::universalLabel, label->toString());
    }
    return space;
}

void ToXMLElementVisitor::writeValue(const Types::SimpleDataType& value,
                                     Types::Identifiers::Identifier type,
                                     std::u16string_view localName) {
    XMLNames& names = m_context.names;
    names.enterValueNamespaces();
    // A pass that only learns the namespaces needs the decision until "groups" is entered.
    if ((m_context.writesValues || !names.groupsEntered()) &&
        StoredBytes::needed(value, type, localName)) {
        names.enterGroups();
        if (m_context.writesValues) {
            const std::vector<std::uint8_t> stored = value.rawBuffer();
            m_sink.attribute(Vocabulary::groupsNamespace, Vocabulary::storedBytes,
                             Utils::hexText(stored.data(), stored.size()));
        }
    }
    if (m_context.writesValues) {
        ToXMLBaseTypeVisitor writer(m_sink);
        value.accept(writer);
    }
}

void ToXMLElementVisitor::visit(const Metadata::SimpleElement& element) {
    if (element.isEmpty() ||
        std::find(m_identities.begin(), m_identities.end(), &element) != m_identities.end()) {
        return;
    }
    const XMLNames::Item& item = itemOf(element);
    const XMLNames::ElementName& name = m_context.names.name(item);
    startProperty(item, name);
    writeValue(*element.value(), item.dataType, localNameOf(name.qualifiedName));
    m_sink.endElement();
}

void ToXMLElementVisitor::writeCollection(const Metadata::CollectionElement& element) {
    if (element.isEmpty()) {
        return;
    }
    const XMLNames::Item& item = itemOf(element);
    if (element.size() == 0 && !item.writesEmptyCollection) {
        return;
    }
    const XMLNames::ElementName& name = m_context.names.name(item);
    const WString& space = startProperty(item, name);
    if (element.size() == 0 && (m_context.writesValues || !m_context.names.groupsEntered())) {
        const WString stored = StoredBytes::emptyCollection(
            element, Types::Identifiers::typeSize(element.itemType()).value_or(0));
        if (!stored.empty()) {
            m_context.names.enterGroups();
            m_sink.attribute(Vocabulary::groupsNamespace, Vocabulary::storedBytes, stored);
        }
    }
    for (std::uint32_t i = 0; i < element.size(); ++i) {
        m_sink.startElement(space, name.itemName);
        writeValue(element.at(i), element.itemType(), itemLocalName);
        m_sink.endElement();
    }
    m_sink.endElement();
}

void ToXMLElementVisitor::visit(const Metadata::BatchElement& element) {
    writeCollection(element);
}

void ToXMLElementVisitor::visit(const Metadata::ArrayElement& element) {
    writeCollection(element);
}

void ToXMLElementVisitor::writeReferenceCollection(
    const Metadata::ReferenceCollectionElement& element) {
    if (element.isEmpty()) {
        return;
    }
    const XMLNames::Item& item = itemOf(element);
    if (element.size() == 0 && !item.writesEmptyCollection) {
        return;
    }
    const XMLNames::ElementName& name = m_context.names.name(item);
    const WString& space = startProperty(item, name);
    if (element.size() == 0 && (m_context.writesValues || !m_context.names.groupsEntered())) {
        const WString stored = StoredBytes::emptyCollection(element, referenceSize);
        if (!stored.empty()) {
            m_context.names.enterGroups();
            m_sink.attribute(Vocabulary::groupsNamespace, Vocabulary::storedBytes, stored);
        }
    }
    for (std::uint32_t i = 0; i < element.size(); ++i) {
        // Large partitions are rarely cached: what the next references lead to is fetched
        // while this one is written.
        if (i + 2 < element.size()) {
            m_context.instances.prefetch(element.referenceAt(i + 2).uuid());
        }
        if (i + 1 < element.size()) {
            const InstanceIndex::Sets next =
                m_context.instances.find(element.referenceAt(i + 1).uuid());
            if (!next.empty()) {
                m_context.visited.prefetch(next.front());
                __builtin_prefetch(next.front());
            }
        }
        writeReference(element.referenceAt(i), space);
    }
    m_sink.endElement();
}

void ToXMLElementVisitor::visit(const Metadata::ReferenceBatchElement& element) {
    writeReferenceCollection(element);
}

void ToXMLElementVisitor::visit(const Metadata::ReferenceArrayElement& element) {
    writeReferenceCollection(element);
}

void ToXMLElementVisitor::visit(const Metadata::ReferenceElement& element) {
    if (element.isEmpty()) {
        return;
    }
    const XMLNames::Item& item = itemOf(element);
    const XMLNames::ElementName& name = m_context.names.name(item);
    const WString& space = startProperty(item, name);
    writeReference(*element.value(), space);
    m_sink.endElement();
}

void ToXMLElementVisitor::writeTargetInstance(const Types::Reference& reference) {
    if (m_context.writesValues) {
        ToXMLBaseTypeVisitor::AttributeBuffer buffer;
        m_sink.attribute(Vocabulary::typesNamespace, Vocabulary::targetInstance,
                         ToXMLBaseTypeVisitor::attributeText(reference, buffer));
    }
}

void ToXMLElementVisitor::writeDangling(const Types::Reference& reference) {
    m_context.names.enterTypesIfUnbound();
    m_sink.startElement(m_context.namespaces().namespaceOf(Vocabulary::s377mPrefix),
                        Vocabulary::danglingRef);
    writeTargetInstance(reference);
    m_sink.endElement();
}

void ToXMLElementVisitor::writeByIdentifier(const Types::Reference& reference,
                                            const WString& propertyNamespace,
                                            const InstanceIndex::Sets& targets) {
    XMLNames& names = m_context.names;
    names.enterTypesIfUnbound();
    static const WString multiple =
        WString(Vocabulary::multipleMetadataSets) + Vocabulary::refSuffix;
    static const WString dark =
        WString(Vocabulary::groupsPrefix) + u':' + Vocabulary::darkMetadata + Vocabulary::refSuffix;
    // The element is named after its target, in the target's namespace.
    const WString* name = &multiple;
    const WString* space = &propertyNamespace;
    static const WString groups(Vocabulary::groupsNamespace);
    if (targets.size() == 1) {
        name = &dark;
        if (const auto* definition = targets.front()->definition()) {
            XMLNames::SetName& target = names.set(*definition);
            if (target.named) {
                name = &target.refName;
            }
            if (target.valid) {
                space = &target.namespaceName;
                names.enter(target);
            }
        } else {
            space = &groups;
            names.enterGroups();
        }
    }
    m_sink.startElement(*space, *name);
    writeTargetInstance(reference);
    m_sink.endElement();
}

void ToXMLElementVisitor::writeReference(const Types::Reference& reference,
                                         const WString& propertyNamespace) {
    const InstanceIndex::Sets targets = m_context.instances.find(reference.uuid());
    if (targets.empty()) {
        writeDangling(reference);
        return;
    }
    const Metadata::MetadataSet& first = *targets.front();
    const bool strong = reference.identifier() == Types::Identifiers::StrongReference;
    const bool followed = m_context.follows(reference, first);
    if (m_context.typedReferences) {
        // A target is nested where it is met first; one already written, one the options do
        // not follow and one the dictionary does not describe are named by identifier, and
        // the floating pass writes what no pass reaches.
        const bool nests = followed && !m_context.visited.contains(&first);
        if (first.definition() != nullptr && (nests || !strong)) {
            ToXMLReferenceVisitor writer(first, m_sink, m_context);
            reference.accept(writer);
        } else {
            writeByIdentifier(reference, propertyNamespace, targets);
        }
        return;
    }
    writeByIdentifier(reference, propertyNamespace, targets);
    if (followed) {
        // Strong targets follow the set as siblings under the document element, linked by
        // the "_REF" element.
        m_targets.insert(m_targets.end(), targets.begin(), targets.end());
    }
}

} // namespace Vellum::XMLBuilder
