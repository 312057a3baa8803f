#include "FromXmlCommand.h"

#include "ArgumentParser.h"
#include "ErrorPrefix.h"
#include "InputFile.h"
#include "OutputFile.h"
#include "PartitionInput.h"
#include "UsageError.h"
#include "XmlOutput.h"

#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <filesystem>
#include <iostream>
#include <optional>
#include <ostream>

namespace Vellum::App {

std::string FromXmlCommand::name() const {
    return "from-xml";
}

std::string FromXmlCommand::summary() const {
    return "import an XML document of header metadata and write it as KLV";
}

std::string FromXmlCommand::synopsis() const {
    return "vellum from-xml [--dictionary FILE]... [--new-identifiers] [--verbose] (-o OUT | --xml "
           "[XML OPTIONS] "
           "[-o OUT]) DOC";
}

std::string FromXmlCommand::description() const {
    return "Imports the XML document DOC (as 'vellum to-xml' writes it) into new header\n"
           "metadata and writes it to OUT as KLV: the primer pack, then the sets. OUT is\n"
           "replaced only once every byte is written, so a failure never leaves a partial or\n"
           "damaged OUT behind; '-o -' writes to standard output. With --xml the imported\n"
           "header metadata is written as XML again instead (to standard output without\n"
           "-o), which shows how an edited document reads back; the XML options below apply\n"
           "only then. Prints nothing else on success unless --verbose is given. DOC '-'\n"
           "reads standard input.\n";
}

std::string FromXmlCommand::optionHelp() const {
    return "  -o, --output OUT   where to write the result ('-': standard output)\n"
           "  --dictionary FILE  add the definitions of a dictionary file to the built-in\n"
           "                     ones; may be given more than once\n"
           "  --new-identifiers  give every set and reference target a new identifier, as\n"
           "                     for a template (by default identifiers written as 16\n"
           "                     dotted hexadecimal bytes are kept)\n"
           "  --verbose          print a one-line summary (on stderr when the result goes to\n"
           "                     standard output)\n"
           "  --xml              write the imported header metadata as XML, not KLV\n" +
           XmlOutput::optionHelp();
}

void FromXmlCommand::declareOptions(ArgumentParser& parser) const {
    parser.addValueOption("output", 'o');
    parser.addRepeatableOption("dictionary");
    parser.addFlag("verbose");
    parser.addFlag("new-identifiers");
    parser.addFlag("xml");
    XmlOutput::declareOptions(parser);
}

void FromXmlCommand::checkXmlOptions(const ArgumentParser& arguments) const {
    if (arguments.flag("xml")) {
        return;
    }
    for (const char* option : {"typed-references", "structural-only", "compact"}) {
        if (arguments.flag(option)) {
            throw UsageError("option '--" + std::string(option) + "' needs --xml", synopsis());
        }
    }
    if (arguments.value("encoding")) {
        throw UsageError("option '--encoding' needs --xml", synopsis());
    }
}

int FromXmlCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    arguments.requirePositionals(1, 1, "DOC");
    const bool asXml = arguments.flag("xml");
    const std::optional<std::string> given = arguments.value("output");
    if (!given && !asXml) {
        throw UsageError("missing -o OUT (use '-o -' for standard output, or --xml)", synopsis());
    }
    const std::string output = given.value_or("-");
    if (output.empty()) {
        throw UsageError("option '--output' needs a file name, not ''", synopsis());
    }
    checkXmlOptions(arguments);
    const std::optional<XmlOutput> xml =
        asXml ? std::optional<XmlOutput>(std::in_place, arguments) : std::nullopt;

    Metadata::PartitionMetadata partition(PartitionInput::loadDictionary(arguments));
    const InputFile input(arguments.positionals().front());
    const std::string& path = input.name();
    import(input, partition,
           arguments.flag("new-identifiers") ? XML2Partition::Identifiers::Renew
                                             : XML2Partition::Identifiers::Keep);
    std::string bytes;
    if (xml) {
        bytes = xml->render(partition, path);
    } else {
        DataIO::Memory::MemoryDataSink sink;
        partition.serialize(sink);
        bytes.assign(reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize());
    }
    OutputFile::write(bytes.data(), bytes.size(), output, out,
                      asXml ? "the XML" : "the header metadata");
    if (arguments.flag("verbose")) {
        std::ostream& summary = OutputFile::isStandardOutput(output) ? std::cerr : out;
        summary << "imported " << partition.sets().size() << " sets and " << partition.darkCount()
                << " dark metadata sets from " << path << "; wrote " << bytes.size() << " bytes of "
                << (asXml ? "XML" : "header metadata") << " to " << OutputFile::describe(output)
                << '\n';
    }
    return 0;
}

void FromXmlCommand::import(const InputFile& input, Metadata::PartitionMetadata& partition,
                            XML2Partition::Identifiers identifiers) {
    const std::string& path = input.path();
    // Opening it first reports a missing or unreadable document as such.
    { const DataIO::File::FileDataSource probe(path); }
    const WString widePath = Utils::stringToWstring(path);
    try {
        XML2Partition::getPartitionMetadataFromFile(widePath.c_str(), &partition, identifiers);
    } catch (const Exceptions::BaseException& error) {
        // Parser errors name the document already; faults in its content do not.
        const std::string name = std::filesystem::path(path).filename().string();
        if (!input.readsStandardInput() && error.utf8Message().find(name) != std::string::npos) {
            throw;
        }
        ErrorPrefix::rethrow(error, input.quotedName() + ": ");
    }
    // The import skips elements it does not know; a document with nothing it knows is not
    // header metadata, and writing an empty primer pack for it would hide the mistake.
    if (partition.sets().empty() && partition.darkCount() == 0) {
        const std::string problem = "the document holds no sets of header metadata (no element "
                                    "the dictionary knows)";
        VELLUM_THROW(InvalidFormat, input.quotedName() + ": " + problem);
    }
}

} // namespace Vellum::App
