#include "Vellum/XMLBuilder/DarkMetadataReader.h"

#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/Key.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/KLV/Value.h"
#include "Vellum/Metadata/DarkMetadataSet.h"
#include "Vellum/Metadata/MetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "Vellum/XMLBuilder/FromXMLValueParser.h"
#include "Vellum/XMLBuilder/NodeSelector.h"
#include "Vellum/XMLBuilder/Vocabulary.h"
#include "Vellum/XMLUtils/Document.h"

#include <xercesc/dom/DOMAttr.hpp>

#include <memory>
#include <string>

namespace Vellum::XMLBuilder {
namespace {

/// The text of the attribute `qualifiedName`; throws InvalidFormat naming it when absent.
WString requiredAttribute(const xercesc::DOMElement& element, const char16_t* qualifiedName) {
    const xercesc::DOMAttr* attribute = element.getAttributeNode(qualifiedName);
    if (attribute == nullptr) {
        WString name;
        XMLUtils::utf16ToWstring(element.getNodeName(), name);
        VELLUM_THROW(InvalidFormat, u"the dark metadata element " + name + u" has no " +
                                        qualifiedName + u" attribute");
    }
    return NodeSelector::text(*attribute);
}

bool isHexDigit(char16_t c) {
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

[[noreturn]] void rejectValue(const WString& keyText, const char* problem, unsigned line) {
    throw Exceptions::InvalidFormat("DarkMetadataSet with key='" + Utils::wstringToString(keyText) +
                                        "' value " + problem,
                                    DarkMetadataReader::sourceName, line);
}

} // namespace

void DarkMetadataReader::read(const xercesc::DOMElement& element,
                              Metadata::PartitionMetadata& partition) {
    const WString keyText = requiredAttribute(element, Vocabulary::key);
    const KLV::Key key(keyText, Types::DottedHex);
    const auto berOctets = static_cast<std::uint8_t>(
        FromXMLValueParser::readDecimal(requiredAttribute(element, Vocabulary::berOctetCount)));

    const WString text = NodeSelector::text(element);
    if (text.size() % 2 != 0) {
        rejectValue(keyText, "has invalid Length", 89);
    }
    for (const char16_t c : text) {
        if (!isHexDigit(c)) {
            rejectValue(keyText, "contains non Hexadecimal characters", 99);
        }
    }
    const KLV::Value value(FromXMLValueParser::readHex(text));
    partition.addDarkMetadataSet(
        std::make_unique<Metadata::DarkMetadataSet>(key, berOctets, value));
}

bool DarkMetadataReader::isParsedGroup(const xercesc::DOMElement& element) {
    if (element.getFirstElementChild() != nullptr ||
        element.getAttributeNode(Vocabulary::instanceUID) != nullptr ||
        element.getAttributeNode(Vocabulary::generationUID) != nullptr) {
        return true;
    }
    // A local set without items has neither text nor children.
    const xercesc::DOMAttr* key = element.getAttributeNode(Vocabulary::key);
    if (key == nullptr || !NodeSelector::text(element).empty()) {
        return false;
    }
    try {
        return KLV::isLocalSet(KLV::Key(NodeSelector::text(*key), Types::DottedHex));
    } catch (const Exceptions::BaseException&) {
        return false; // the dark reader names the malformed key
    }
}

Metadata::MetadataSet* DarkMetadataReader::readParsedGroup(xercesc::DOMElement& element,
                                                           Metadata::PartitionMetadata& partition,
                                                           const SetTagTable& setTags,
                                                           ReferenceNameTable& names) {
    const KLV::Key key(requiredAttribute(element, Vocabulary::key), Types::DottedHex);
    const auto berOctets = static_cast<std::uint8_t>(
        FromXMLValueParser::readDecimal(requiredAttribute(element, Vocabulary::berOctetCount)));
    Metadata::MetadataSet* set = partition.createDarkParsedGroup(key, berOctets);
    FromXMLMetadataSetVisitor reader(element, setTags, partition, names);
    set->accept(reader);
    return set;
}

} // namespace Vellum::XMLBuilder
