#include "XMLBuilder/DarkMetadataWriter.h"

#include "Utils/HexText.h"
#include "XMLBuilder/Vocabulary.h"

#include "Vellum/KLV/Key.h"
#include "Vellum/Metadata/DarkMetadataSet.h"
#include "Vellum/Metadata/MetadataSet.h"

#include <string>

namespace Vellum::XMLBuilder {
namespace {

// Starts the dark form's element with its two identification attributes.
void startDarkElement(MarkupSink& sink, XMLNames& names, const KLV::Key& key,
                      std::uint8_t berOctets) {
    names.enterGroups();
    const WString groups = names.namespaces().namespaceOf(Vocabulary::groupsPrefix);
    sink.startElement(groups, WString(Vocabulary::groupsPrefix) + u':' + Vocabulary::darkMetadata);
    sink.attribute(groups, Vocabulary::key, key.toString());
    const std::string octets = std::to_string(unsigned{berOctets});
    sink.attribute(groups, Vocabulary::berOctetCount, WString(octets.begin(), octets.end()));
}

} // namespace

void DarkMetadataWriter::writeDarkMetadataSet(const Metadata::DarkMetadataSet& dark,
                                              MarkupSink& sink, XMLNames& names, bool writesValue) {
    startDarkElement(sink, names, dark.key(), dark.berLength());
    if (const DataIO::Slice* value = dark.value(); value != nullptr && writesValue) {
        sink.text(Utils::hexText(value->begin(), value->size()));
    }
    sink.endElement();
}

void DarkMetadataWriter::startParsedGroup(const Metadata::MetadataSet& set, MarkupSink& sink,
                                          XMLNames& names) {
    startDarkElement(sink, names, set.key(), set.berLength());
}

} // namespace Vellum::XMLBuilder
