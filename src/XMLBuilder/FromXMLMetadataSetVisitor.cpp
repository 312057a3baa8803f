#include "Vellum/XMLBuilder/FromXMLMetadataSetVisitor.h"

#include "Vellum/Exceptions/ParseError.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MisplacedAttribute.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Metadata/Structural/StructuralMetadataULs.h"
#include "Vellum/Types/LocalTag.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/Types/UniversalLabel.h"
#include "Vellum/XMLBuilder/FromXMLElementVisitor.h"
#include "Vellum/XMLBuilder/FromXMLMetaAttributeVisitor.h"
#include "Vellum/XMLBuilder/NodeSelector.h"
#include "Vellum/XMLBuilder/Vocabulary.h"
#include "Vellum/XMLUtils/Document.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMDocument.hpp>

#include <map>
#include <memory>
#include <vector>

namespace Vellum::XMLBuilder {
namespace {

struct Names {
    WString tagName{Vocabulary::xmlTagName};
    WString prefix{Vocabulary::xmlDefaultPrefix};
    WString namespaceURI{Vocabulary::xmlNamespaceURI};
    WString groups{Vocabulary::groupsPrefix};
    WString extensionElements{u"ExtensionElements"};
    WString rp210{u"rp210:"};
};

const Names& names() {
    static const Names constants;
    return constants;
}

WString attributeText(const xercesc::DOMElement& element, const char16_t* qualifiedName) {
    WString text;
    XMLUtils::utf16ToWstring(element.getAttribute(qualifiedName), text);
    return text;
}

/// Whether `namespaceName` + ":" + `tagName` equals `key`, without building the string.
bool joinedEquals(const WString& namespaceName, const WString& tagName, const WString& key) {
    return namespaceName.size() + 1 + tagName.size() == key.size() &&
           key.compare(0, namespaceName.size(), namespaceName) == 0 &&
           key[namespaceName.size()] == u':' &&
           key.compare(namespaceName.size() + 1, WString::npos, tagName) == 0;
}

} // namespace

FromXMLMetadataSetVisitor::~FromXMLMetadataSetVisitor() = default;

void FromXMLMetadataSetVisitor::visit(Metadata::MetadataSet& set) {
    // The children and the namespaces of the prefixes are looked up once for all elements.
    const std::vector<xercesc::DOMElement*> children = NodeSelector::elementChildren(m_element);
    std::map<WString, const XMLCh*> namespaces;
    for (const auto& [label, element] : set) {
        FromXMLMetaAttributeVisitor attribute;
        element->metaAttribute()->accept(attribute);
        const MetaMetadata::MetaElement* meta = attribute.metaElement();
        if (meta == nullptr) {
            continue;
        }
        const WString* tagName = meta->property(names().tagName);
        const WString* prefix = meta->property(names().prefix);
        if (tagName == nullptr || prefix == nullptr) {
            continue;
        }
        if (*tagName == Vocabulary::instanceUIDLocalName ||
            *tagName == Vocabulary::generationUIDLocalName) {
            readIdentity(set, *element, *meta, *tagName);
            continue;
        }
        auto space = namespaces.find(*prefix);
        if (space == namespaces.end()) {
            space = namespaces
                        .emplace(*prefix, NodeSelector::selectedNamespace(
                                              m_element, *prefix, Vocabulary::rp210Namespace))
                        .first;
        }
        xercesc::DOMElement* child = NodeSelector::firstNamed(children, space->second, *tagName);
        if (child != nullptr) {
            FromXMLElementVisitor reader(*child, meta, m_partition, m_setTags, m_names, m_depth);
            element->accept(reader);
        }
    }
    readMisplacedIdentity(set);
    readExtensionElements(set);
}

void FromXMLMetadataSetVisitor::readMisplacedIdentity(Metadata::MetadataSet& set) {
    // A set whose definition lacks the identity elements (or one the dictionary does not
    // describe) still carries them as "rp210" attributes when its stored form had them.
    const auto dictionary = m_partition.partitionDictionary().dictionary();
    const Types::UniversalLabel& uidLabel =
        Metadata::Structural::StructuralMetadataULs::instanceUID();
    xercesc::DOMAttr* uid = m_element.getAttributeNode(Vocabulary::instanceUID);
    const MetaMetadata::MetaElement* uidMeta = dictionary->findElement(uidLabel);
    if (uid != nullptr && uidMeta != nullptr && set.findElement(uidLabel) == nullptr) {
        auto* identity = static_cast<Metadata::SimpleElement*>(
            set.createInvalidElement(std::make_shared<MetaMetadata::MisplacedAttribute>(*uidMeta)));
        const WString& identifier = m_names.identifierFor(NodeSelector::text(*uid));
        identity->set(std::make_unique<Types::UUID>(identifier, Types::DottedHex), false);
    }
    static const Types::UniversalLabel generationLabel(
        u"06.0E.2B.34.01.01.01.02.05.20.07.01.08.00.00.00", Types::DottedHex);
    xercesc::DOMAttr* generation = m_element.getAttributeNode(Vocabulary::generationUID);
    const MetaMetadata::MetaElement* generationMeta = dictionary->findElement(generationLabel);
    if (generation != nullptr && generationMeta != nullptr &&
        set.findElement(generationLabel) == nullptr) {
        Metadata::Element* identity = set.createInvalidElement(
            std::make_shared<MetaMetadata::MisplacedAttribute>(*generationMeta));
        FromXMLElementVisitor reader(*generation, generationMeta, m_partition, m_setTags, m_names,
                                     m_depth);
        identity->accept(reader);
    }
}

void FromXMLMetadataSetVisitor::readIdentity(Metadata::MetadataSet& set, Metadata::Element& element,
                                             const MetaMetadata::MetaElement& meta,
                                             const WString& tagName) {
    const WString qualifiedName = names().rp210 + tagName;
    xercesc::DOMAttr* attribute = m_element.getAttributeNode(qualifiedName.c_str());
    if (attribute == nullptr) {
        return;
    }
    if (tagName == Vocabulary::generationUIDLocalName) {
        FromXMLElementVisitor reader(*attribute, &meta, m_partition, m_setTags, m_names, m_depth);
        element.accept(reader);
        return;
    }
    auto* identity = dynamic_cast<Metadata::SimpleElement*>(&element);
    if (identity == nullptr) {
        return;
    }
    const Types::UUID* own = set.instanceUID();
    const WString& identifier =
        m_names.identifierFor(NodeSelector::text(*attribute),
                              own != nullptr ? own->toString(Types::DottedHex) : WString());
    identity->set(std::make_unique<Types::UUID>(identifier, Types::DottedHex), false);
}

void FromXMLMetadataSetVisitor::readExtensionElements(Metadata::MetadataSet& set) {
    if (!NodeSelector::isPrefixBound(m_element, names().groups)) {
        return;
    }
    xercesc::DOMElement* container =
        NodeSelector::firstChild(m_element, names().groups, names().extensionElements);
    if (container == nullptr) {
        return;
    }
    const auto dictionary = m_partition.partitionDictionary().dictionary();
    for (xercesc::DOMElement* child : NodeSelector::elementChildren(*container)) {
        readExtensionElement(set, *child, *dictionary);
    }
}

void FromXMLMetadataSetVisitor::readExtensionElement(Metadata::MetadataSet& set,
                                                     xercesc::DOMElement& node,
                                                     const MetaMetadata::Dictionary& dictionary) {
    WString qualifiedName;
    XMLUtils::utf16ToWstring(node.getNodeName(), qualifiedName);
    const std::size_t colon = qualifiedName.find(u':');
    const WString prefix = qualifiedName.substr(0, colon);
    const WString localName =
        colon == WString::npos ? qualifiedName : qualifiedName.substr(colon + 1);
    // Only the declarations on the root element are consulted.
    const WString declaration = u"xmlns:" + prefix;
    const WString namespaceName =
        attributeText(*m_element.getOwnerDocument()->getDocumentElement(), declaration.c_str());
    const WString key = namespaceName + u':' + localName;

    for (auto it = dictionary.metaElementBegin(); it != dictionary.metaElementEnd(); ++it) {
        const MetaMetadata::MetaElement& meta = *it->second;
        const WString* space = meta.property(names().namespaceURI);
        const WString* tagName = meta.property(names().tagName);
        if (space != nullptr && tagName != nullptr && joinedEquals(*space, *tagName, key)) {
            Metadata::Element* element =
                set.createInvalidElement(std::make_shared<MetaMetadata::MisplacedAttribute>(meta));
            FromXMLElementVisitor reader(node, &meta, m_partition, m_setTags, m_names, m_depth);
            element->accept(reader);
            return;
        }
    }
    readUnknownElement(set, node);
}

void FromXMLMetadataSetVisitor::readUnknownElement(Metadata::MetadataSet& set,
                                                   xercesc::DOMElement& node) {
    const WString tagText = attributeText(node, Vocabulary::staticLocalTag);
    const WString labelText = attributeText(node, Vocabulary::universalLabel);
    Metadata::PartitionDictionary& primer = m_partition.partitionDictionary();
    Types::LocalTag tag;
    if (!tagText.empty()) {
        tag = Types::LocalTag(tagText, Types::DottedHex);
        if (!labelText.empty()) {
            // Kept in the primer so that the element is written with its label again.
            primer.insert(tag, Types::UniversalLabel(labelText, Types::DottedHex));
        }
    } else if (!labelText.empty()) {
        const Types::UniversalLabel label(labelText, Types::DottedHex);
        tag = primer.findOrGenerate(label);
        Metadata::Element* element =
            set.createInvalidElement(std::make_shared<MetaMetadata::UnknownAttribute>(tag, label));
        FromXMLElementVisitor reader(node, nullptr, m_partition, m_setTags, m_names, m_depth);
        element->accept(reader);
        return;
    } else {
        WString name;
        XMLUtils::utf16ToWstring(node.getNodeName(), name);
        VELLUM_THROW(ParseError, u"the extension element " + name + u" has neither " +
                                     Vocabulary::staticLocalTag + u" nor " +
                                     Vocabulary::universalLabel + u" to identify it");
    }
    Metadata::Element* element =
        set.createInvalidElement(std::make_shared<MetaMetadata::UnknownAttribute>(
            tag, MetaMetadata::UnknownAttribute::LocalTagNotResolved));
    FromXMLElementVisitor reader(node, nullptr, m_partition, m_setTags, m_names, m_depth);
    element->accept(reader);
}

} // namespace Vellum::XMLBuilder
