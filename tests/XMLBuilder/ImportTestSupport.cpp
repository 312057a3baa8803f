#include "XMLBuilder/ImportTestSupport.h"

#include "Utils/HexText.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/Metadata/CollectionElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/SimpleElement.h"
#include "Vellum/Types/ISO7String.h"
#include "Vellum/Types/Reference.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/Partition2XMLText.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <regex>
#include <set>
#include <sstream>

namespace VellumTest {

using namespace Vellum;

namespace {

const std::regex& attributeIdentifier() {
    static const std::regex pattern(R"re((?:rp210:InstanceUID|types:TargetInstance)="([^"]*)")re");
    return pattern;
}

// A UUID text standing alone as an attribute value or element text.
const std::regex& bareUUID() {
    static const std::regex pattern(
        R"re((["> ])([0-9A-Fa-f]{2}(?:\.[0-9A-Fa-f]{2}){15})(?=["<]))re");
    return pattern;
}

std::set<std::string> instanceIdentifiers(const std::string& xml) {
    std::set<std::string> found;
    for (std::sregex_iterator it(xml.begin(), xml.end(), attributeIdentifier()), end; it != end;
         ++it) {
        found.insert((*it)[1].str());
    }
    return found;
}

std::string mapped(const IdentifierOrder& order, const WString& text) {
    const auto it = order.index.find(Utils::wstringToString(text));
    return it == order.index.end() ? "unmapped:" + Utils::wstringToString(text)
                                   : "#" + std::to_string(it->second);
}

std::string valueText(const Types::SimpleDataType& value, const IdentifierOrder& order,
                      bool identity) {
    if (const auto* reference = dynamic_cast<const Types::Reference*>(&value)) {
        return "ref " + mapped(order, reference->toString());
    }
    if (identity) {
        return "id " + mapped(order, static_cast<const Types::UUID&>(value).toString());
    }
    if (const auto* iso = dynamic_cast<const Types::ISO7String*>(&value)) {
        return "iso7 " + iso->value();
    }
    if (const auto* utf16 = dynamic_cast<const Types::UTF16String*>(&value)) {
        return "utf16 " + Utils::wstringToString(utf16->value());
    }
    return std::to_string(value.identifier()) + " " + hexOf(value.rawBuffer());
}

std::string elementText(const Metadata::Element& element, const IdentifierOrder& order) {
    if (element.isEmpty()) {
        return "(none)";
    }
    const bool identity =
        element.metaElement() != nullptr && element.metaElement()->name() == u"InstanceUID";
    if (const auto* simple = dynamic_cast<const Metadata::SimpleElement*>(&element)) {
        return valueText(*simple->value(), order, identity);
    }
    if (const auto* reference = dynamic_cast<const Metadata::ReferenceElement*>(&element)) {
        return valueText(*reference->value(), order, false);
    }
    const auto& collection = dynamic_cast<const Metadata::CollectionElement&>(element);
    std::string text = "[";
    for (std::uint32_t i = 0; i < collection.size(); ++i) {
        text += valueText(collection.at(i), order, false) + ";";
    }
    return text + "]";
}

} // namespace

std::string hexOf(const std::vector<std::uint8_t>& bytes) {
    std::string out;
    for (const std::uint8_t byte : bytes) {
        Utils::appendHexByte(out, byte);
    }
    return out;
}

IdentifierOrder identifierOrder(const std::string& xml) {
    const std::set<std::string> identifiers = instanceIdentifiers(xml);
    IdentifierOrder order;
    for (std::sregex_iterator it(xml.begin(), xml.end(), bareUUID()), end; it != end; ++it) {
        const std::string text = (*it)[2].str();
        if (identifiers.count(text) != 0 && order.index.count(text) == 0) {
            order.index.emplace(text, order.inOrder.size());
            order.inOrder.push_back(text);
        }
    }
    return order;
}

std::string normalizeIdentifiers(const std::string& xml) {
    const IdentifierOrder order = identifierOrder(xml);
    std::string out;
    auto last = xml.cbegin();
    for (std::sregex_iterator it(xml.begin(), xml.end(), bareUUID()), end; it != end; ++it) {
        const auto& match = *it;
        const auto found = order.index.find(match[2].str());
        if (found == order.index.end()) {
            continue;
        }
        out.append(last, match[2].first);
        out += "#" + std::to_string(found->second);
        last = match[2].second;
    }
    out.append(last, xml.cend());
    return out;
}

std::string exportText(Metadata::PartitionMetadata& partition, bool typedReferences) {
    WString text;
    XMLBuilder::partition2XML(&partition, typedReferences, false, XMLUtils::EncodingType::UTF8,
                              text);
    return Utils::wstringToString(text);
}

std::unique_ptr<Metadata::PartitionMetadata> emptyPartition() {
    return std::make_unique<Metadata::PartitionMetadata>(MetaMetadata::Dictionary::builtIn());
}

std::unique_ptr<Metadata::PartitionMetadata>
serializedAndReadBack(Metadata::PartitionMetadata& partition) {
    DataIO::Memory::MemoryDataSink sink(partition.serializedSize());
    partition.serialize(sink);
    return Metadata::PartitionMetadata::read(DataIO::Slice(sink.rawBuffer(), sink.serializedSize()),
                                             0, partition.partitionDictionary().dictionary());
}

std::map<std::string, std::string> canonicalSets(const Metadata::PartitionMetadata& partition,
                                                 const IdentifierOrder& order) {
    std::map<std::string, std::string> sets;
    for (const Metadata::MetadataSet* set : partition.sets()) {
        std::ostringstream text;
        text << "key " << set->key().toUtf8() << "\n";
        for (const auto& [label, element] : *set) {
            text << Utils::wstringToString(label.toString()) << " = "
                 << elementText(*element, order) << "\n";
        }
        std::size_t position = 0;
        for (auto it = set->invalidBegin(); it != set->invalidEnd(); ++it) {
            text << "invalid " << position++ << " = " << elementText(**it, order) << "\n";
        }
        const std::string identifier = set->instanceUID() != nullptr
                                           ? mapped(order, set->instanceUID()->toString())
                                           : "(no id)";
        sets[identifier] += text.str();
    }
    return sets;
}

const char16_t* const probeKey = u"06.0E.2B.34.02.53.01.01.0E.7F.7F.01.01.01.01.00";

namespace {

const std::map<std::string, std::string>& probeLabels() {
    static const std::map<std::string, std::string> labels = {
        {"Names", "06.0E.2B.34.01.01.01.01.0E.7F.7F.01.01.00.00.00"},
        {"Titles", "06.0E.2B.34.01.01.01.01.0E.7F.7F.01.02.00.00.00"},
        {"Counts", "06.0E.2B.34.01.01.01.01.0E.7F.7F.01.03.00.00.00"},
        {"Blobs", "06.0E.2B.34.01.01.01.01.0E.7F.7F.01.04.00.00.00"},
        {"Components", "06.0E.2B.34.01.01.01.01.0E.7F.7F.01.05.00.00.00"},
        {"Children", "06.0E.2B.34.01.01.01.01.0E.7F.7F.01.06.00.00.00"},
        {"Child", "06.0E.2B.34.01.01.01.01.0E.7F.7F.01.07.00.00.00"},
        {"Friend", "06.0E.2B.34.01.01.01.01.0E.7F.7F.01.08.00.00.00"},
        {"Note", "06.0E.2B.34.01.01.01.01.0E.7F.7F.01.09.00.00.00"},
    };
    return labels;
}

} // namespace

Types::UniversalLabel label(const char16_t* text) {
    return Types::UniversalLabel(text, Types::DottedHex);
}

Types::UniversalLabel probeLabel(const std::string& name) {
    return Types::UniversalLabel(Utils::stringToWstring(probeLabels().at(name).c_str()),
                                 Types::DottedHex);
}

Templates::SharedPtr<MetaMetadata::Dictionary> probeDictionary() {
    auto dictionary = MetaMetadata::Dictionary::builtIn();
    std::string text = "format\tvellum-dictionary\t1\n"
                       "columns\tset\tkey\tname\tparent\tstructural\txml-prefix\txml-namespace\n"
                       "columns\telement\tset\tul\tname\ttype\tcollection\treference\ttarget\n"
                       "set\t" +
                       Utils::wstringToString(WString(probeKey)) +
                       "\tImportProbe\tInterchangeObject\tyes\tprobe\turn:vellum:probe\n";
    const char* rows[][5] = {
        {"Names", "ISO7String", "batch", "none", "-"},
        {"Titles", "UTF16String", "array", "none", "-"},
        {"Counts", "UInt16", "array", "none", "-"},
        {"Blobs", "DataStream", "batch", "none", "-"},
        {"Components", "J2KPictureComponent", "array", "none", "-"},
        {"Children", "StrongReference", "array", "strong", "ImportProbe"},
        {"Child", "StrongReference", "none", "strong", "ImportProbe"},
        {"Friend", "WeakReference", "none", "weak", "ImportProbe"},
        {"Note", "UTF16String", "none", "none", "-"},
    };
    for (const auto& row : rows) {
        text += std::string("element\tImportProbe\t") + probeLabels().at(row[0]) + "\t" + row[0] +
                "\t" + row[1] + "\t" + row[2] + "\t" + row[3] + "\t" + row[4] + "\n";
    }
    dictionary->loadText(text, "probe");
    return dictionary;
}

std::string document(const std::string& body) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>)"
           R"(<s377m:MetadataSets xmlns:s377m="urn:SMPTE:S377M" xmlns:rp210="http://www.smpte-ra.org/rp210" )"
           R"(xmlns:types="urn:SMPTE:Types:MXF" xmlns:s422mTypes="urn:SMPTE:S422MTypes:MXF" )"
           R"(xmlns:groups="urn:SMPTE:Groups:MXF" xmlns:probe="urn:vellum:probe">)" +
           body + "</s377m:MetadataSets>";
}

Templates::list<Metadata::MetadataSet*> importBody(const std::string& body,
                                                   Metadata::PartitionMetadata& partition) {
    const std::string xml = document(body);
    return XML2Partition::getPartitionMetadataFromBuffer(
        reinterpret_cast<const std::uint8_t*>(xml.data()), static_cast<std::uint32_t>(xml.size()),
        &partition);
}

ParsedXML::ParsedXML(const std::string& xml)
    : m_reader(m_handler) {
    m_reader.readBuffer(reinterpret_cast<const std::uint8_t*>(xml.data()), xml.size());
}

const XMLBuilder::XMLNode& ParsedXML::root() const {
    return *m_reader.lastUnit();
}

const XMLBuilder::XMLNode& ParsedXML::first() const {
    return *root().firstChild();
}

} // namespace VellumTest
