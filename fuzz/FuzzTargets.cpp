#include "FuzzTargets.h"

#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/DataIO/Memory/MemoryDataSource.h"
#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/KLV/Key.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/MXF/MXFFile.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/HeaderMetadataComparison.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Types/Collection.h"
#include "Vellum/Types/Factories/ValueFactory.h"
#include "Vellum/Types/ISO7String.h"
#include "Vellum/Types/LocalTag.h"
#include "Vellum/Types/StringRepresentation.h"
#include "Vellum/Types/StrongReference.h"
#include "Vellum/Types/UMID32.h"
#include "Vellum/Types/UMID64.h"
#include "Vellum/Types/UTF16String.h"
#include "Vellum/Types/UUID.h"
#include "Vellum/Types/UniversalLabel.h"
#include "Vellum/Types/ValueText.h"
#include "Vellum/Types/WeakReference.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/Partition2XML.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace VellumFuzz {
namespace {

using namespace Vellum;
using Metadata::PartitionMetadata;

/// One built-in dictionary for every run: reading and importing do not change it.
const Templates::SharedPtr<MetaMetadata::Dictionary>& builtIn() {
    static const auto dictionary = MetaMetadata::Dictionary::builtIn();
    return dictionary;
}

DataIO::Slice slice(const std::vector<std::uint8_t>& bytes) {
    return {bytes.data(), bytes.size()};
}

std::vector<std::uint8_t> serialize(PartitionMetadata& partition) {
    DataIO::Memory::MemoryDataSink sink;
    partition.serialize(sink);
    return sink.release();
}

/// Reads header metadata the library wrote itself: a failure is a finding, not bad input.
std::unique_ptr<PartitionMetadata> readBack(const std::vector<std::uint8_t>& bytes,
                                            const std::string& what) {
    try {
        return PartitionMetadata::read(slice(bytes), 0, builtIn());
    } catch (const Exceptions::BaseException& e) {
        throw Finding(what + " cannot be read again: " + e.utf8Message());
    }
}

/// Throws Finding listing the differences, unless the two hold equal header metadata.
void requireEqual(const PartitionMetadata& before, const PartitionMetadata& after,
                  const std::string& what) {
    const auto differences = Metadata::HeaderMetadataComparison::compare(before, after);
    if (differences.empty()) {
        return;
    }
    std::string message = what + ": " + std::to_string(differences.size()) + " difference(s)";
    for (std::size_t i = 0; i < differences.size() && i < 8; ++i) {
        const auto& d = differences[i];
        message += "\n  " + std::string(Metadata::MetadataDifference::kindName(d.kind)) + " " +
                   Utils::wstringToString(d.setName) + " " +
                   Utils::wstringToString(d.setIdentifier) + " " +
                   Utils::wstringToString(d.elementName) + ": " +
                   Utils::wstringToString(d.oldValue) + " -> " + Utils::wstringToString(d.newValue);
    }
    throw Finding(message);
}

bool startsWithPrimerPack(const std::uint8_t* data, std::size_t size) {
    return size >= KLV::Key::byteCount && KLV::isPrimerPack(KLV::Key(data, KLV::Key::byteCount));
}

/// The header metadata the bytes hold, each region as it lies in the input: one region
/// when they start with a primer pack, else one for each partition of the MXF file that
/// has header metadata (at most `maxPartitions`). Throws what the MXF reader throws when
/// the bytes are no MXF file.
std::vector<MXF::HeaderMetadataBytes>
headerMetadataRegions(const std::uint8_t* data, std::size_t size, std::size_t maxPartitions) {
    std::vector<MXF::HeaderMetadataBytes> regions;
    if (startsWithPrimerPack(data, size)) {
        regions.push_back({0, std::vector<std::uint8_t>(data, data + size)});
        return regions;
    }
    DataIO::Memory::MemoryDataSource source(data, size);
    const MXF::MXFFile file(source);
    const auto& partitions = file.partitions();
    for (std::size_t i = 0; i < partitions.size() && regions.size() < maxPartitions; ++i) {
        if (partitions[i].headerByteCount() == 0) {
            continue;
        }
        try {
            regions.push_back(file.readHeaderMetadata(partitions[i]));
        } catch (const Exceptions::BaseException&) {
            // Another partition may still be readable.
        }
    }
    return regions;
}

/// Reads `region`; writing the model back unchanged must give the same bytes, and reading
/// those must give equal header metadata.
void readAndWriteBack(const MXF::HeaderMetadataBytes& region) {
    const auto partition = PartitionMetadata::read(slice(region.bytes), region.offset, builtIn());
    std::vector<const Metadata::MetadataSet*> order;
    partition->calculateSerializationOrder(order, true, true);
    if (order.size() != partition->sets().size()) {
        throw Finding("the serialisation order lists " + std::to_string(order.size()) + " of " +
                      std::to_string(partition->sets().size()) + " sets");
    }
    const auto written = serialize(*partition);
    if (written != region.bytes) {
        const auto mismatch =
            std::mismatch(written.begin(), written.end(), region.bytes.begin(), region.bytes.end());
        throw Finding("header metadata at offset " + std::to_string(region.offset) +
                      " is written back with other bytes: " + std::to_string(written.size()) +
                      " bytes for " + std::to_string(region.bytes.size()) +
                      ", the first difference at byte " +
                      std::to_string(mismatch.first - written.begin()));
    }
    requireEqual(*partition, *readBack(written, "header metadata written back"),
                 "header metadata written back and read again");
}

/// A text that parsed must format back as itself in upper case.
void requireEcho(const WString& text, const WString& formatted) {
    WString upper = text;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char16_t c) { return c >= u'a' && c <= u'f' ? c - u'a' + u'A' : c; });
    if (formatted != upper) {
        throw Finding("identifier text '" + Utils::wstringToString(text) + "' formats back as '" +
                      Utils::wstringToString(formatted) + "'");
    }
}

/// Parses `text` as the identifier `T`.
template <class T>
void parseIdentifier(const WString& text) {
    requireEcho(text, T(text, Types::DottedHex).toString());
}

/// A value's stored bytes must be the bytes it was built from.
void requireBytes(const Types::BaseType& value, DataIO::Slice bytes, const char* what) {
    DataIO::Memory::MemoryDataSink sink;
    value.serialize(sink);
    const auto written = sink.release();
    if (value.serializedSize() != written.size() ||
        !std::equal(written.begin(), written.end(), bytes.begin(), bytes.end())) {
        throw Finding(std::string(what) + " of type " +
                      std::to_string(static_cast<unsigned>(value.identifier())) +
                      " does not write back its " + std::to_string(bytes.size()) + " bytes");
    }
    Types::ValueText::format(value);
}

/// UTF-8 to UTF-16 and back must settle after one pass (ill-formed input becomes U+FFFD).
void convertText(std::string_view text) {
    const WString wide = Utils::stringToWstring(text);
    const std::string narrow = Utils::wstringToString(wide);
    if (Utils::stringToWstring(narrow) != wide || Utils::wstringToString(wide) != narrow) {
        throw Finding("UTF-8 conversion of " + std::to_string(text.size()) +
                      " bytes does not settle");
    }
}

/// The dictionary a user text is loaded onto, when the text does not start from scratch.
constexpr std::string_view baseDictionary =
    "format\tvellum-dictionary\t1\n"
    "columns\tset\tkey\tname\tparent\tabstract\tstructural\txml-prefix\txml-namespace\n"
    "columns\telement\tset\tul\tname\tlocal-tag\ttype\tcollection\treference\ttarget\n"
    "set\t06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.01.00\tInterchangeObject\t-\tyes\tyes\t"
    "s377m\turn:SMPTE:S377M\n"
    "element\tInterchangeObject\t06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00\tInstanceUID\t"
    "3C0A\tUUID\tnone\tnone\t-\n"
    "set\t06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00\tPreface\tInterchangeObject\tno\tyes\t"
    "-\t-\n"
    "set\t06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.30.00\tIdentification\tInterchangeObject\t"
    "no\tno\t-\t-\n"
    "element\tPreface\t06.0E.2B.34.01.01.01.02.06.01.01.04.06.04.00.00\tIdentifications\t3B06\t"
    "StrongReference\tarray\tstrong\tIdentification\n"
    "element\tIdentification\t06.0E.2B.34.01.01.01.02.05.20.07.01.01.00.00.00\tCompanyName\t"
    "3C01\tUTF16String\tnone\tnone\t-\n";

struct DictionaryCounts {
    std::size_t sets, packs, definitions, elements;
    bool operator==(const DictionaryCounts& o) const {
        return sets == o.sets && packs == o.packs && definitions == o.definitions &&
               elements == o.elements;
    }
};

DictionaryCounts countsOf(const MetaMetadata::Dictionary& d) {
    return {d.metaMetadataSetCount(), d.packCount(), d.setDefinitionCount(),
            d.elementDefinitionCount()};
}

} // namespace

void readMXF(const std::uint8_t* data, std::size_t size) {
    try {
        for (const auto& region : headerMetadataRegions(data, size, 4)) {
            try {
                readAndWriteBack(region);
            } catch (const Exceptions::BaseException&) {
                // Malformed header metadata in this partition.
            }
        }
    } catch (const Exceptions::BaseException&) {
        // Not an MXF file.
    }
}

void importXML(const std::uint8_t* data, std::size_t size) {
    if (size > std::numeric_limits<std::uint32_t>::max()) {
        return;
    }
    PartitionMetadata partition(builtIn());
    try {
        XML2Partition::getPartitionMetadataFromBuffer(data, static_cast<std::uint32_t>(size),
                                                      &partition);
    } catch (const Exceptions::BaseException&) {
        return;
    }
    std::vector<std::uint8_t> written;
    try {
        written = serialize(partition);
    } catch (const Exceptions::BaseException&) {
        return; // a value too long for its item, and the like
    }
    requireEqual(partition, *readBack(written, "imported header metadata written as KLV"),
                 "imported header metadata written as KLV and read again");
}

void loadDictionary(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return;
    }
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    MetaMetadata::Dictionary dictionary;
    if ((data[0] & 1) != 0) {
        dictionary.loadText(baseDictionary, "base");
    }
    const DictionaryCounts before = countsOf(dictionary);
    try {
        dictionary.loadText(text, "fuzz");
    } catch (const Exceptions::BaseException&) {
        if (!(countsOf(dictionary) == before)) {
            throw Finding("a failed load changed the dictionary");
        }
        return;
    }
    const DictionaryCounts loaded = countsOf(dictionary);
    try {
        dictionary.loadText(text, "again");
    } catch (const Exceptions::BaseException& e) {
        throw Finding("loading the same text twice fails: " + e.utf8Message());
    }
    if (!(countsOf(dictionary) == loaded)) {
        throw Finding("loading the same text twice changed the dictionary");
    }
    for (auto it = dictionary.metaElementBegin(); it != dictionary.metaElementEnd(); ++it) {
        if (dictionary.findElement(it->first) == nullptr) {
            throw Finding("an element listed by the dictionary is not found by its label");
        }
    }
}

void parseValueText(const std::uint8_t* data, std::size_t size) {
    if (size < 2) {
        return;
    }
    const std::uint8_t selector = data[1];
    const DataIO::Slice rest(data + 2, size - 2);
    const std::string_view narrow(reinterpret_cast<const char*>(rest.begin()), rest.size());
    const WString text = Utils::stringToWstring(narrow);
    try {
        switch (data[0] % 12) {
        case 0:
            parseIdentifier<Types::UUID>(text);
            break;
        case 1:
            parseIdentifier<Types::UniversalLabel>(text);
            break;
        case 2:
            parseIdentifier<Types::UMID32>(text);
            break;
        case 3:
            parseIdentifier<Types::UMID64>(text);
            break;
        case 4:
            parseIdentifier<Types::LocalTag>(text);
            break;
        case 5:
            parseIdentifier<KLV::Key>(text);
            break;
        case 6: {
            const Types::StrongReference strong(text);
            const Types::WeakReference weak(text);
            if (strong.uuid() != weak.uuid()) {
                throw Finding("strong and weak references read the same text differently");
            }
            requireEcho(text, strong.toString());
            break;
        }
        case 7: {
            // Any byte count, zero included.
            std::vector<std::uint8_t> out(selector);
            Types::StringRepresentation::parse(text, out.data(), out.size(), "value");
            requireEcho(text, Types::StringRepresentation::format(out.data(), out.size()));
            break;
        }
        case 8: {
            const Types::ISO7String value{std::string(narrow)};
            requireBytes(value, rest, "ISO7String");
            break;
        }
        case 9: {
            WString units;
            for (std::size_t i = 0; i + 1 < rest.size(); i += 2) {
                units.push_back(static_cast<char16_t>(rest.begin()[i] << 8 | rest.begin()[i + 1]));
            }
            const Types::UTF16String value(units);
            requireBytes(value, {rest.begin(), rest.size() & ~std::uint64_t{1}}, "UTF16String");
            convertText(Utils::wstringToString(units));
            break;
        }
        case 10: {
            const auto type = static_cast<Types::Identifiers::Identifier>(selector % 40);
            if (Types::Factories::ValueFactory::hasValueClass(type)) {
                requireBytes(*Types::Factories::ValueFactory::create(type, rest), rest, "value");
            }
            break;
        }
        default: {
            const auto kind =
                (selector & 0x80) != 0 ? Types::Identifiers::Array : Types::Identifiers::Batch;
            const auto itemType = static_cast<Types::Identifiers::Identifier>(selector % 40);
            requireBytes(*Types::Factories::ValueFactory::createCollection(kind, itemType, rest),
                         rest, "collection");
            break;
        }
        }
    } catch (const Exceptions::BaseException&) {
        // Malformed text or bytes.
    }
    convertText(narrow);
}

void roundTrip(const std::uint8_t* data, std::size_t size) {
    std::unique_ptr<PartitionMetadata> partition;
    try {
        const auto regions = headerMetadataRegions(data, size, 1);
        if (regions.empty()) {
            return;
        }
        partition = PartitionMetadata::read(slice(regions.front().bytes), regions.front().offset,
                                            builtIn());
    } catch (const Exceptions::BaseException&) {
        return;
    }
    for (const bool typed : {false, true}) {
        const char* layout = typed ? "typed" : "flat";
        WString xml;
        try {
            XMLBuilder::partition2XML(partition.get(), typed, false, XMLUtils::EncodingType::UTF8,
                                      xml);
        } catch (const Exceptions::BaseException&) {
            continue;
        }
        if (xml.empty()) {
            return; // no Preface to start from
        }
        PartitionMetadata imported(builtIn());
        try {
            XML2Partition::getPartitionMetadataFromString(xml, &imported);
        } catch (const Exceptions::BaseException& e) {
            throw Finding(std::string("the ") + layout +
                          " export does not import: " + e.utf8Message());
        }
        requireEqual(*partition, imported, std::string("MXF -> XML (") + layout + ") -> model");
    }
}

const std::vector<Target>& targets() {
    static const std::vector<Target> all = {
        {"mxf", readMXF},
        {"xml", importXML},
        {"dictionary", loadDictionary},
        {"value_text", parseValueText},
        {"round_trip", roundTrip},
    };
    return all;
}

const Target* findTarget(std::string_view name) {
    for (const Target& target : targets()) {
        if (name == target.name) {
            return &target;
        }
    }
    return nullptr;
}

} // namespace VellumFuzz
