#include "XMLBuilder/DarkMetadataReader.h"

#include "Utils/HexText.h"
#include "XMLBuilder/Vocabulary.h"

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

#include <memory>
#include <string>

namespace Vellum::XMLBuilder {
namespace {

/// The text of the attribute `qualifiedName`; throws InvalidFormat naming it when absent.
std::u16string_view requiredAttribute(const XMLNode& element, const char16_t* qualifiedName) {
    const XMLAttribute* attribute = element.attribute(qualifiedName);
    if (attribute == nullptr) {
        VELLUM_THROW(InvalidFormat, u"the dark metadata element " + element.qualifiedName() +
                                        u" has no " + qualifiedName + u" attribute");
    }
    return attribute->value;
}

[[noreturn]] void rejectValue(std::u16string_view keyText, const char* problem, unsigned line) {
    throw Exceptions::InvalidFormat("DarkMetadataSet with key='" + Utils::wstringToString(keyText) +
                                        "' value " + problem,
                                    DarkMetadataReader::sourceName, line);
}

} // namespace

void DarkMetadataReader::read(const XMLNode& element, Metadata::PartitionMetadata& partition) {
    const std::u16string_view keyText = requiredAttribute(element, Vocabulary::key);
    const KLV::Key key(WString(keyText), Types::DottedHex);
    const auto berOctets = static_cast<std::uint8_t>(
        FromXMLValueParser::readDecimal(requiredAttribute(element, Vocabulary::berOctetCount)));

    const std::u16string_view text = element.text();
    if (text.size() % 2 != 0) {
        rejectValue(keyText, "has invalid Length", 89);
    }
    for (const char16_t c : text) {
        if (Utils::hexDigitValue(c) < 0) {
            rejectValue(keyText, "contains non Hexadecimal characters", 99);
        }
    }
    const KLV::Value value(FromXMLValueParser::readHex(text));
    partition.addDarkMetadataSet(
        std::make_unique<Metadata::DarkMetadataSet>(key, berOctets, value));
}

bool DarkMetadataReader::isParsedGroup(const XMLNode& element) {
    if (element.firstChild() != nullptr || element.attribute(Vocabulary::instanceUID) != nullptr ||
        element.attribute(Vocabulary::generationUID) != nullptr) {
        return true;
    }
    // A local set without items has neither text nor children.
    const XMLAttribute* key = element.attribute(Vocabulary::key);
    if (key == nullptr || !element.text().empty()) {
        return false;
    }
    try {
        return KLV::isLocalSet(KLV::Key(WString(key->value), Types::DottedHex));
    } catch (const Exceptions::BaseException&) {
        return false; // the dark reader names the malformed key
    }
}

Metadata::MetadataSet* DarkMetadataReader::readParsedGroup(const XMLNode& element,
                                                           Metadata::PartitionMetadata& partition,
                                                           ImportTables& tables) {
    const KLV::Key key(WString(requiredAttribute(element, Vocabulary::key)), Types::DottedHex);
    const auto berOctets = static_cast<std::uint8_t>(
        FromXMLValueParser::readDecimal(requiredAttribute(element, Vocabulary::berOctetCount)));
    Metadata::MetadataSet* set = partition.createDarkParsedGroup(key, berOctets);
    FromXMLMetadataSetVisitor reader(element, partition, tables);
    set->accept(reader);
    return set;
}

} // namespace Vellum::XMLBuilder
