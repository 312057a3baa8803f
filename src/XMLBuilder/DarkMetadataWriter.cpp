#include "Vellum/XMLBuilder/DarkMetadataWriter.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/DarkMetadataSet.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/XMLBuilder/NamespaceRecord.h"
#include "Vellum/XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "Vellum/XMLBuilder/Vocabulary.h"

#include <xercesc/dom/DOMNode.hpp>
#include <xercesc/dom/DOMText.hpp>
#include <xercesc/util/XMLString.hpp>

#include <string>

namespace Vellum::XMLBuilder {
namespace {

xercesc::DOMElement* findOrCreate(xercesc::DOMDocument& document, xercesc::DOMElement& parent,
                                  const char16_t* qualifiedName) {
    for (xercesc::DOMNode* child = parent.getFirstChild(); child != nullptr;
         child = child->getNextSibling()) {
        if (child->getNodeType() == xercesc::DOMNode::ELEMENT_NODE &&
            xercesc::XMLString::equals(child->getNodeName(), qualifiedName)) {
            return static_cast<xercesc::DOMElement*>(child);
        }
    }
    xercesc::DOMElement* created =
        document.createElementNS(Vocabulary::groupsNamespace, qualifiedName);
    parent.appendChild(created);
    return created;
}

// Makes the dark form's element with its two identification attributes.
xercesc::DOMElement* darkElement(xercesc::DOMDocument& document, const WString& prefix,
                                 const WString& localName, const KLV::Key& key,
                                 std::uint8_t berOctets, NamespaceRecord& namespaces) {
    const WString qualifiedName = prefix + u':' + localName;
    xercesc::DOMElement* element =
        document.createElementNS(namespaces.namespaceOf(prefix).c_str(), qualifiedName.c_str());
    const WString groups = namespaces.namespaceOf(Vocabulary::groupsPrefix);
    element->setAttributeNS(groups.c_str(), Vocabulary::key, key.toString().c_str());
    const std::string octets = std::to_string(unsigned{berOctets});
    element->setAttributeNS(groups.c_str(), Vocabulary::berOctetCount,
                            WString(octets.begin(), octets.end()).c_str());
    return element;
}

} // namespace

xercesc::DOMElement*
DarkMetadataWriter::findOrCreateFloatingDarkMetadata(xercesc::DOMDocument& document,
                                                     xercesc::DOMElement& parent) {
    return findOrCreate(document, parent, Vocabulary::floatingDarkMetadata);
}

xercesc::DOMElement*
DarkMetadataWriter::findOrCreateExtensionElements(xercesc::DOMDocument& document,
                                                  xercesc::DOMElement& setElement) {
    return findOrCreate(document, setElement, Vocabulary::extensionElements);
}

void DarkMetadataWriter::writeDarkMetadataSet(const Metadata::DarkMetadataSet& dark,
                                              xercesc::DOMElement& parent,
                                              NamespaceRecord& namespaces) {
    namespaces.enter(Vocabulary::groupsNamespace, Vocabulary::groupsPrefix);
    xercesc::DOMDocument& document = *parent.getOwnerDocument();
    xercesc::DOMElement* element =
        darkElement(document, Vocabulary::groupsPrefix, Vocabulary::darkMetadata, dark.key(),
                    dark.berLength(), namespaces);
    if (const DataIO::Slice* value = dark.value(); value != nullptr) {
        const WString hex = ToXMLBaseTypeVisitor::hexText(value->begin(), value->size());
        element->appendChild(document.createTextNode(hex.c_str()));
    }
    parent.appendChild(element);
}

xercesc::DOMElement& DarkMetadataWriter::writeParsedGroupFrame(const Metadata::MetadataSet& set,
                                                               xercesc::DOMElement& parent,
                                                               NamespaceRecord& namespaces) {
    namespaces.enter(Vocabulary::groupsNamespace, Vocabulary::groupsPrefix);
    xercesc::DOMElement* element =
        darkElement(*parent.getOwnerDocument(), Vocabulary::groupsPrefix, Vocabulary::darkMetadata,
                    set.key(), set.berLength(), namespaces);
    parent.appendChild(element);
    return *element;
}

} // namespace Vellum::XMLBuilder
