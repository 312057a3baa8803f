#include "ToXmlCommand.h"

#include "ArgumentParser.h"
#include "OutputFile.h"
#include "PartitionInput.h"
#include "UsageError.h"
#include "XmlOutput.h"

#include "Vellum/Metadata/PartitionMetadata.h"

#include <ostream>
#include <string>

namespace Vellum::App {

std::string ToXmlCommand::name() const {
    return "to-xml";
}

std::string ToXmlCommand::summary() const {
    return "write the header metadata of a partition as XML";
}

std::string ToXmlCommand::synopsis() const {
    return "vellum to-xml [--partition P] [--dictionary FILE]... [--typed-references] "
           "[--structural-only] [--encoding E] [--compact] [-o OUT] FILE";
}

std::string ToXmlCommand::description() const {
    return "Writes the header metadata of one partition of FILE as an XML document whose\n"
           "root is s377m:MetadataSets: the Preface first, with every set it reaches through\n"
           "references, then the dark metadata and the sets nothing reaches, under\n"
           "groups:FloatingDarkMetadata. The XML goes to standard output, or to OUT, which\n"
           "is replaced only once every byte is written. Header metadata without a Preface\n"
           "is an error. FILE '-' reads standard input.\n";
}

std::string ToXmlCommand::optionHelp() const {
    return "  -o, --output OUT   write the XML to OUT instead ('-': standard output)\n" +
           PartitionInput::optionHelp() + XmlOutput::optionHelp();
}

void ToXmlCommand::declareOptions(ArgumentParser& parser) const {
    parser.addValueOption("output", 'o');
    PartitionInput::declareOptions(parser);
    XmlOutput::declareOptions(parser);
}

int ToXmlCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    arguments.requirePositionals(1, 1, "FILE");
    const std::string output = arguments.value("output").value_or("-");
    if (output.empty()) {
        throw UsageError("option '--output' needs a file name, not ''", synopsis());
    }
    const XmlOutput xml(arguments);
    const PartitionInput input(arguments);
    const PartitionInput::HeaderMetadata metadata = input.readMetadata();
    const std::string text = xml.render(*metadata.partition, input.path());
    OutputFile::write(text.data(), text.size(), output, out, "the XML");
    return 0;
}

} // namespace Vellum::App
