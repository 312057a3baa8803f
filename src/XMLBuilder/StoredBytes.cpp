#include "XMLBuilder/StoredBytes.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/DataIO/Slice.h"
#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Metadata/Element.h"
#include "Vellum/Types/Factories/ValueFactory.h"
#include "Vellum/Types/SimpleDataType.h"
#include "Vellum/XMLBuilder/FromXMLValueParser.h"
#include "Vellum/XMLBuilder/NamespaceRecord.h"
#include "Vellum/XMLBuilder/ToXMLBaseTypeVisitor.h"
#include "Vellum/XMLBuilder/Vocabulary.h"
#include "Vellum/XMLUtils/Document.h"

#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLException.hpp>

#include <algorithm>

namespace Vellum::XMLBuilder {
namespace {

using Types::Identifiers::Identifier;

// Import drops whitespace-only text nodes, so such a text reads as no text at all.
WString visibleText(const xercesc::DOMNode& node) {
    WString text;
    XMLUtils::utf16ToWstring(node.getTextContent(), text);
    const bool blank = std::all_of(text.begin(), text.end(), [](char16_t c) {
        return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
    });
    return blank ? WString() : text;
}

// Types whose text always gives back the stored bytes, or that are written as child elements
// whose parts are exact numbers.
bool alwaysExact(Identifier type) {
    switch (type) {
    case Identifier::Int8:
    case Identifier::Int16:
    case Identifier::Int32:
    case Identifier::Int64:
    case Identifier::UInt8:
    case Identifier::UInt16:
    case Identifier::UInt32:
    case Identifier::UInt64:
    case Identifier::Length:
    case Identifier::Position:
    case Identifier::UUID:
    case Identifier::UniversalLabel:
    case Identifier::UMID32:
    case Identifier::UMID64:
    case Identifier::Rational:
    case Identifier::Timestamp:
    case Identifier::VersionType:
    case Identifier::ProductVersion:
    case Identifier::J2KPictureComponent:
    case Identifier::J2KCodingStyleDefault:
    case Identifier::J2KQuantisationDefault:
        return true;
    default:
        return false;
    }
}

// An RGBA layout writes its first five components of two bytes each.
bool rgbaBeyondFive(const std::vector<std::uint8_t>& bytes) {
    constexpr std::size_t written = 10;
    return bytes.size() > written &&
           std::any_of(bytes.begin() + written, bytes.end(), [](std::uint8_t b) { return b != 0; });
}

bool textGivesBack(xercesc::DOMElement& element, Identifier type,
                   const std::vector<std::uint8_t>& stored) {
    if (visibleText(element).empty()) {
        return false; // an empty element reads as no value
    }
    try {
        const auto parsed = FromXMLValueParser::parse(element, type);
        return parsed && parsed->rawBuffer() == stored;
    } catch (const Exceptions::BaseException&) {
        return false;
    } catch (const xercesc::XMLException&) {
        return false;
    }
}

} // namespace

void StoredBytes::markIfInexact(xercesc::DOMElement& element, const Types::SimpleDataType& value,
                                Identifier type, NamespaceRecord& namespaces) {
    if (alwaysExact(type) && value.identifier() == type) {
        return;
    }
    const std::vector<std::uint8_t> stored = value.rawBuffer();
    const bool exact = value.identifier() == Identifier::RGBALayout && type == value.identifier()
                           ? !rgbaBeyondFive(stored)
                           : textGivesBack(element, type, stored);
    if (exact) {
        return;
    }
    namespaces.enter(Vocabulary::groupsNamespace, Vocabulary::groupsPrefix);
    const WString hex = ToXMLBaseTypeVisitor::hexText(stored.data(), stored.size());
    element.setAttributeNS(Vocabulary::groupsNamespace, Vocabulary::storedBytes, hex.c_str());
}

void StoredBytes::markEmptyCollection(xercesc::DOMElement& element,
                                      const Metadata::Element& collection,
                                      std::uint32_t importedItemSize, NamespaceRecord& namespaces) {
    DataIO::Memory::MemoryDataSink sink;
    collection.serializeValue(sink);
    const std::vector<std::uint8_t> stored(sink.rawBuffer(),
                                           sink.rawBuffer() + sink.serializedSize());
    const std::vector<std::uint8_t> imported = {0,
                                                0,
                                                0,
                                                0,
                                                static_cast<std::uint8_t>(importedItemSize >> 24U),
                                                static_cast<std::uint8_t>(importedItemSize >> 16U),
                                                static_cast<std::uint8_t>(importedItemSize >> 8U),
                                                static_cast<std::uint8_t>(importedItemSize)};
    if (stored != imported) {
        namespaces.enter(Vocabulary::groupsNamespace, Vocabulary::groupsPrefix);
        const WString hex = ToXMLBaseTypeVisitor::hexText(stored.data(), stored.size());
        element.setAttributeNS(Vocabulary::groupsNamespace, Vocabulary::storedBytes, hex.c_str());
    }
}

std::vector<std::uint8_t> StoredBytes::emptyCollection(const xercesc::DOMElement& element) {
    const xercesc::DOMAttr* attribute =
        element.getAttributeNodeNS(Vocabulary::groupsNamespace, u"StoredBytes");
    if (attribute == nullptr || element.getFirstElementChild() != nullptr) {
        return {};
    }
    WString hexText;
    XMLUtils::utf16ToWstring(attribute->getValue(), hexText);
    return FromXMLValueParser::readHex(hexText);
}

Templates::auto_ptr<Types::SimpleDataType> StoredBytes::read(xercesc::DOMNode& node,
                                                             Identifier type) {
    if (node.getNodeType() != xercesc::DOMNode::ELEMENT_NODE) {
        return nullptr;
    }
    auto& element = static_cast<xercesc::DOMElement&>(node);
    const xercesc::DOMAttr* attribute =
        element.getAttributeNodeNS(Vocabulary::groupsNamespace, u"StoredBytes");
    if (attribute == nullptr) {
        return nullptr;
    }
    WString hexText;
    XMLUtils::utf16ToWstring(attribute->getValue(), hexText);
    try {
        const std::vector<std::uint8_t> bytes = FromXMLValueParser::readHex(hexText);
        const Identifier kind =
            Types::Factories::ValueFactory::hasValueClass(type) ? type : Identifier::Unknown;
        auto value =
            Types::Factories::ValueFactory::create(kind, DataIO::Slice(bytes.data(), bytes.size()));
        // What the export writes for these bytes, in a scratch element of the same document.
        xercesc::DOMDocument& document = *element.getOwnerDocument();
        xercesc::DOMElement* scratch =
            document.createElementNS(element.getNamespaceURI(), element.getNodeName());
        NamespaceRecord scratchNamespaces;
        ToXMLBaseTypeVisitor writer(scratch, scratchNamespaces);
        value->accept(writer);
        const bool unedited = visibleText(*scratch) == visibleText(element);
        scratch->release();
        return unedited ? std::move(value) : nullptr;
    } catch (const Exceptions::BaseException&) {
        return nullptr; // stored bytes that do not fit the type: the text decides
    }
}

} // namespace Vellum::XMLBuilder
