#include "Vellum/XMLBuilder/ToXMLElementVisitor.h"

#include "XMLBuilder/StoredBytes.h"

#include "Vellum/Exceptions/NotFoundInPrimer.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"
#include "Vellum/MetaMetadata/MetaAttribute.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/ArrayElement.h"
#include "Vellum/Metadata/BatchElement.h"
#include "Vellum/Metadata/DarkParsedGroup.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceBatchElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/LocalTag.h"
#include "Vellum/XMLBuilder/DarkMetadataWriter.h"
#include "Vellum/XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "Vellum/XMLBuilder/ToXMLMetaAttributeVisitor.h"
#include "Vellum/XMLBuilder/ToXMLMetadataSetVisitor.h"
#include "Vellum/XMLBuilder/ToXMLReferenceVisitor.h"
#include "Vellum/XMLBuilder/Vocabulary.h"

#include <xercesc/dom/DOMDocument.hpp>

namespace Vellum::XMLBuilder {
namespace {

// The item size of a collection of references: one UUID.
constexpr std::uint32_t referenceSize = 16;

ToXMLMetaAttributeVisitor classify(const Metadata::Element& element) {
    ToXMLMetaAttributeVisitor attribute;
    element.metaAttribute()->accept(attribute);
    return attribute;
}

// The qualified name of a set's element, from its definition ("groups" without one).
WString qualifiedNameOf(const Metadata::MetadataSet& set) {
    if (const auto* definition = set.definition()) {
        const WString* prefix = definition->property(Vocabulary::xmlDefaultPrefix);
        const WString* tagName = definition->property(Vocabulary::xmlTagName);
        if (prefix != nullptr && tagName != nullptr) {
            return *prefix + u':' + *tagName;
        }
    }
    // A local set the dictionary does not describe is written as dark metadata.
    return WString(Vocabulary::groupsPrefix) + u':' + Vocabulary::darkMetadata;
}

} // namespace

ToXMLElementVisitor::~ToXMLElementVisitor() = default;

ToXMLElementVisitor::Name
ToXMLElementVisitor::nameOf(const ToXMLMetaAttributeVisitor& attribute) const {
    Name name;
    if (const MetaMetadata::MetaElement* meta = attribute.metaElement()) {
        const WString* namespaceName = meta->property(Vocabulary::xmlNamespaceURI);
        const WString* prefix = meta->property(Vocabulary::xmlDefaultPrefix);
        const WString* tagName = meta->property(Vocabulary::xmlTagName);
        name.namespaceName = namespaceName != nullptr ? *namespaceName : WString();
        name.tagName = tagName != nullptr ? *tagName : meta->name();
        m_context.namespaces.enter(name.namespaceName, prefix != nullptr ? *prefix : WString());
        const WString* recorded = m_context.namespaces.prefixOf(name.namespaceName);
        name.prefix = recorded != nullptr ? *recorded : WString();
    } else {
        name.prefix = Vocabulary::groupsPrefix;
        name.namespaceName = Vocabulary::groupsNamespace;
        name.tagName = Vocabulary::darkElement;
        m_context.namespaces.enter(name.namespaceName, name.prefix);
    }
    return name;
}

xercesc::DOMElement* ToXMLElementVisitor::createPropertyElement(const Name& name,
                                                                bool defined) const {
    const WString namespaceName =
        defined ? name.namespaceName : m_context.namespaces.namespaceOf(name.prefix);
    return m_setElement.getOwnerDocument()->createElementNS(namespaceName.c_str(),
                                                            name.qualified().c_str());
}

void ToXMLElementVisitor::place(xercesc::DOMElement* property,
                                const ToXMLMetaAttributeVisitor& attribute) const {
    if (attribute.metaElement() != nullptr &&
        attribute.kind() == ToXMLMetaAttributeVisitor::Defined) {
        m_setElement.appendChild(property);
        return;
    }
    // Elements the dictionary does not place in this set go to the set's extension container,
    // which moves to the end of the set element.
    xercesc::DOMDocument& document = *m_setElement.getOwnerDocument();
    xercesc::DOMElement* container =
        DarkMetadataWriter::findOrCreateExtensionElements(document, m_setElement);
    container->appendChild(property);
    m_setElement.appendChild(container);
    if (attribute.metaElement() == nullptr) {
        identify(property, attribute);
    }
}

void ToXMLElementVisitor::identify(xercesc::DOMElement* property,
                                   const ToXMLMetaAttributeVisitor& attribute) const {
    const WString groups = m_context.namespaces.namespaceOf(Vocabulary::groupsPrefix);
    const Types::LocalTag tag(attribute.localTagText(), Types::DottedHex);
    if (tag.isStaticLocalTag()) {
        property->setAttributeNS(groups.c_str(), Vocabulary::staticLocalTag,
                                 attribute.localTagText().c_str());
    }
    try {
        const WString label = m_context.partition.partitionDictionary().find(tag, false).toString();
        if (!label.empty()) {
            property->setAttributeNS(groups.c_str(), Vocabulary::universalLabel, label.c_str());
        }
    } catch (const Exceptions::NotFoundInPrimer&) {
        // An element whose tag the primer does not know is identified by its tag alone.
    }
}

void ToXMLElementVisitor::visit(const Metadata::SimpleElement& element) {
    if (element.isEmpty()) {
        return;
    }
    const ToXMLMetaAttributeVisitor attribute = classify(element);
    const Name name = nameOf(attribute);
    const WString qualifiedName = name.qualified();
    if (qualifiedName == Vocabulary::instanceUID || qualifiedName == Vocabulary::generationUID) {
        xercesc::DOMAttr* identity = m_setElement.getOwnerDocument()->createAttributeNS(
            name.namespaceName.c_str(), qualifiedName.c_str());
        m_setElement.setAttributeNodeNS(identity);
        ToXMLBaseTypeVisitor writer(identity);
        element.value()->accept(writer);
        return;
    }
    xercesc::DOMElement* property = createPropertyElement(name, attribute.metaElement() != nullptr);
    place(property, attribute);
    ToXMLBaseTypeVisitor writer(property, m_context.namespaces);
    element.value()->accept(writer);
    const MetaMetadata::MetaElement* meta = attribute.metaElement();
    StoredBytes::markIfInexact(*property, *element.value(),
                               meta != nullptr ? meta->dataType() : Types::Identifiers::Unknown,
                               m_context.namespaces);
}

bool ToXMLElementVisitor::writesEmptyCollection(const Metadata::Element& element) const {
    const auto* defined =
        dynamic_cast<const MetaMetadata::MetaAttribute*>(element.metaAttribute().get());
    return defined != nullptr &&
           (defined->requiredStatus() == MetaMetadata::AttributeRequiredStatus::Required ||
            defined->requiredStatus() == MetaMetadata::AttributeRequiredStatus::Optional);
}

void ToXMLElementVisitor::writeCollection(const Metadata::CollectionElement& element) {
    if (element.isEmpty() || (element.size() == 0 && !writesEmptyCollection(element))) {
        return;
    }
    const ToXMLMetaAttributeVisitor attribute = classify(element);
    const Name name = nameOf(attribute);
    xercesc::DOMElement* property = createPropertyElement(name, attribute.metaElement() != nullptr);
    place(property, attribute);
    xercesc::DOMDocument& document = *m_setElement.getOwnerDocument();
    if (element.size() == 0) {
        StoredBytes::markEmptyCollection(
            *property, element, Types::Identifiers::typeSize(element.itemType()).value_or(0),
            m_context.namespaces);
    }
    const WString itemName = name.prefix + u':' + Vocabulary::itemElement;
    for (std::uint32_t i = 0; i < element.size(); ++i) {
        xercesc::DOMElement* item =
            document.createElementNS(property->getNamespaceURI(), itemName.c_str());
        property->appendChild(item);
        ToXMLBaseTypeVisitor writer(item, m_context.namespaces);
        element.at(i).accept(writer);
        StoredBytes::markIfInexact(*item, element.at(i), element.itemType(), m_context.namespaces);
    }
}

void ToXMLElementVisitor::visit(const Metadata::BatchElement& element) {
    writeCollection(element);
}

void ToXMLElementVisitor::visit(const Metadata::ArrayElement& element) {
    writeCollection(element);
}

void ToXMLElementVisitor::writeReferenceCollection(
    const Metadata::ReferenceCollectionElement& element) {
    if (element.isEmpty() || (element.size() == 0 && !writesEmptyCollection(element))) {
        return;
    }
    const ToXMLMetaAttributeVisitor attribute = classify(element);
    const Name name = nameOf(attribute);
    xercesc::DOMElement* property = createPropertyElement(name, attribute.metaElement() != nullptr);
    place(property, attribute);
    if (element.size() == 0) {
        StoredBytes::markEmptyCollection(*property, element, referenceSize, m_context.namespaces);
    }
    for (std::uint32_t i = 0; i < element.size(); ++i) {
        writeReference(element.referenceAt(i), *property);
    }
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
    const ToXMLMetaAttributeVisitor attribute = classify(element);
    const Name name = nameOf(attribute);
    xercesc::DOMElement* property = createPropertyElement(name, attribute.metaElement() != nullptr);
    if (writeReference(*element.value(), *property)) {
        place(property, attribute);
    } else {
        property->release();
    }
}

void ToXMLElementVisitor::writeDangling(const Types::Reference& reference,
                                        xercesc::DOMElement& property) const {
    m_context.namespaces.enterIfPrefixUnbound(Vocabulary::typesNamespace, Vocabulary::typesPrefix);
    xercesc::DOMDocument& document = *property.getOwnerDocument();
    const WString s377m = m_context.namespaces.namespaceOf(Vocabulary::s377mPrefix);
    xercesc::DOMElement* marker = document.createElementNS(s377m.c_str(), Vocabulary::danglingRef);
    xercesc::DOMAttr* target =
        document.createAttributeNS(Vocabulary::typesNamespace, Vocabulary::targetInstance);
    marker->setAttributeNodeNS(target);
    ToXMLBaseTypeVisitor writer(target);
    reference.accept(writer);
    property.appendChild(marker);
}

void ToXMLElementVisitor::writeByIdentifier(
    const Types::Reference& reference, xercesc::DOMElement& property,
    const Metadata::PartitionMetadata::SetList& targets) const {
    m_context.namespaces.enterIfPrefixUnbound(Vocabulary::typesNamespace, Vocabulary::typesPrefix);
    xercesc::DOMDocument& document = *property.getOwnerDocument();
    const WString name = (targets.size() > 1 ? WString(Vocabulary::multipleMetadataSets)
                                             : qualifiedNameOf(*targets.front())) +
                         Vocabulary::refSuffix;
    // The element is named after its target, in the target's namespace.
    WString space(property.getNamespaceURI());
    if (targets.size() == 1) {
        const auto* definition = targets.front()->definition();
        const WString* prefix =
            definition != nullptr ? definition->property(Vocabulary::xmlDefaultPrefix) : nullptr;
        const WString* namespaceName =
            definition != nullptr ? definition->property(Vocabulary::xmlNamespaceURI) : nullptr;
        if (prefix != nullptr && namespaceName != nullptr) {
            space = *namespaceName;
            m_context.namespaces.enter(*namespaceName, *prefix);
        } else if (definition == nullptr) {
            space = Vocabulary::groupsNamespace;
            m_context.namespaces.enter(Vocabulary::groupsNamespace, Vocabulary::groupsPrefix);
        }
    }
    xercesc::DOMElement* byIdentifier = document.createElementNS(space.c_str(), name.c_str());
    property.appendChild(byIdentifier);
    xercesc::DOMAttr* target =
        document.createAttributeNS(Vocabulary::typesNamespace, Vocabulary::targetInstance);
    byIdentifier->setAttributeNodeNS(target);
    ToXMLBaseTypeVisitor writer(target);
    reference.accept(writer);
}

bool ToXMLElementVisitor::writeReference(const Types::Reference& reference,
                                         xercesc::DOMElement& property) {
    const auto& targets = m_context.partition.findByInstanceUID(reference.uuid());
    if (targets.empty()) {
        writeDangling(reference, property);
        return true;
    }
    const Metadata::MetadataSet& first = *targets.front();
    const bool strong = reference.identifier() == Types::Identifiers::StrongReference;
    const bool followed =
        !m_context.structuralTargetsOnly || KLV::isStructuralMetadataSet(first.key());
    if (m_context.typedReferences) {
        // A target is nested where it is met first; one already written, one the options do
        // not follow and one the dictionary does not describe are named by identifier, and
        // the floating pass writes what no pass reaches.
        const bool nests = strong && followed && m_context.visited.count(&first) == 0;
        if (first.definition() != nullptr && (nests || !strong)) {
            ToXMLReferenceVisitor writer(first, property, m_context);
            reference.accept(writer);
        } else {
            writeByIdentifier(reference, property, targets);
        }
        return true;
    }
    writeByIdentifier(reference, property, targets);
    if (strong && followed) {
        // Nested targets are written as siblings under the root, linked by the "_REF" element.
        xercesc::DOMElement& root = *property.getOwnerDocument()->getDocumentElement();
        ToXMLMetadataSetVisitor writer(root, m_context.withTypedReferences(false));
        for (const Metadata::MetadataSet* target : targets) {
            target->accept(writer);
        }
    }
    return true;
}

} // namespace Vellum::XMLBuilder
