#include "XMLBuilder/ImportTestSupport.h"

#include "Utils/HexText.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/HeaderMetadataComparison.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/Partition2XML.h"
#include "Vellum/XMLBuilder/Partition2XMLText.h"
#include "Vellum/XMLBuilder/XML2Partition.h"
#include "Vellum/XMLUtils/Document.h"

#include <gtest/gtest.h>

#include <sstream>

namespace VellumTest {

using namespace Vellum;

std::string hexOf(const std::vector<std::uint8_t>& bytes) {
    std::string out;
    for (const std::uint8_t byte : bytes) {
        Utils::appendHexByte(out, byte);
    }
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

std::string differences(const Metadata::PartitionMetadata& a,
                        const Metadata::PartitionMetadata& b) {
    std::string out;
    for (const auto& d : Metadata::HeaderMetadataComparison::compare(a, b)) {
        out += std::string(Metadata::MetadataDifference::kindName(d.kind)) + " " +
               Utils::wstringToString(d.setName + u" " + d.elementName + u": " + d.oldValue +
                                      u" -> " + d.newValue) +
               "\n";
    }
    return out;
}

using Encoding = XMLUtils::EncodingType;

// Every layout, encoding and option of both text overloads, against the DOM path; from
// `start`, or from the first Preface when it is null.
void expectStreamingEqualsDOM(const Metadata::PartitionMetadata& partition,
                              const Metadata::MetadataSet* start) {
    const auto dom = [&](bool typed, bool structural) {
        return start != nullptr ? XMLBuilder::partition2XML(&partition, start, typed, structural)
                                : XMLBuilder::partition2XML(&partition, typed, structural);
    };
    const auto stream = [&](bool typed, bool structural, Encoding encoding, std::ostream& out,
                            const XMLUtils::SerializeOptions& options) {
        return start != nullptr ? XMLBuilder::partition2XML(&partition, start, typed, structural,
                                                            encoding, out, options)
                                : XMLBuilder::partition2XML(&partition, typed, structural, encoding,
                                                            out, options);
    };
    const auto units = [&](bool typed, bool structural, Encoding encoding, WString& out) {
        if (start != nullptr) {
            XMLBuilder::partition2XML(&partition, start, typed, structural, encoding, out);
        } else {
            XMLBuilder::partition2XML(&partition, typed, structural, encoding, out);
        }
    };
    for (const bool structural : {false, true}) {
        for (const bool typed : {false, true}) {
            SCOPED_TRACE(std::string(typed ? "typed" : "flat") +
                         (structural ? ", structural targets only" : ""));
            const auto document = dom(typed, structural);
            ASSERT_TRUE(document);
            for (const Encoding encoding : {Encoding::UTF8, Encoding::UTF16}) {
                for (const XMLUtils::SerializeOptions options :
                     {XMLUtils::SerializeOptions{true, true},
                      XMLUtils::SerializeOptions{false, true},
                      XMLUtils::SerializeOptions{true, false},
                      XMLUtils::SerializeOptions{false, false}}) {
                    std::string expected;
                    XMLUtils::domToBytes(document.get(), expected, encoding, options);
                    std::ostringstream streamed;
                    ASSERT_TRUE(stream(typed, structural, encoding, streamed, options));
                    EXPECT_EQ(streamed.str(), expected)
                        << "UTF-" << (encoding == Encoding::UTF8 ? 8 : 16) << ", pretty "
                        << options.prettyPrint << ", declaration " << options.xmlDeclaration;
                }
                WString expected;
                XMLUtils::domToBuffer(document.get(), expected, encoding);
                WString text;
                units(typed, structural, encoding, text);
                EXPECT_EQ(text, expected) << "code units";
            }
        }
    }
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

std::unique_ptr<Metadata::PartitionMetadata> probePartition() {
    return std::make_unique<Metadata::PartitionMetadata>(probeDictionary());
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
