#include "HeaderCommand.h"

#include "ArgumentParser.h"
#include "PartitionInput.h"
#include "UsageError.h"

#include "Vellum/DataIO/File/FileDataSink.h"
#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MXF/PartitionPack.h"
#include "Vellum/Metadata/PartitionMetadata.h"

#include <filesystem>
#include <iostream>
#include <optional>
#include <ostream>
#include <string>
#include <system_error>

namespace Vellum::App {
namespace {

// Writes the serialised header metadata to standard output; binary, as it is.
std::uint64_t writeToStream(Metadata::PartitionMetadata& metadata, std::ostream& out) {
    DataIO::Memory::MemoryDataSink sink;
    metadata.serialize(sink);
    out.write(reinterpret_cast<const char*>(sink.rawBuffer()),
              static_cast<std::streamsize>(sink.serializedSize()));
    out.flush();
    if (!out) {
        VELLUM_THROW(IOError, "cannot write the header metadata to standard output");
    }
    return sink.serializedSize();
}

std::uint64_t writeToFile(Metadata::PartitionMetadata& metadata, const std::string& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        VELLUM_THROW(IOError, "output '" + path + "' is a directory, not a file");
    }
    DataIO::File::FileDataSink sink(path);
    metadata.serialize(sink);
    sink.commit();
    return sink.position();
}

} // namespace

std::string HeaderCommand::name() const {
    return "header";
}

std::string HeaderCommand::summary() const {
    return "write the header metadata of a partition to a file";
}

std::string HeaderCommand::synopsis() const {
    return "vellum header [--partition P] [--dictionary FILE]... [--verbose] -o OUT FILE";
}

std::string HeaderCommand::description() const {
    return "Reads the header metadata of one partition of FILE (primer pack, sets, dark\n"
           "metadata and fill) and writes it to OUT as Vellum writes it back. For a file\n"
           "Vellum reads unchanged, that is byte for byte the HeaderByteCount bytes that start\n"
           "at the primer pack. OUT is replaced only when every byte is written, so a failure\n"
           "never leaves a partial or damaged OUT behind. '-o -' writes to standard output.\n"
           "Prints nothing on success unless --verbose is given. FILE '-' reads standard\n"
           "input.\n";
}

std::string HeaderCommand::optionHelp() const {
    return "  -o, --output OUT   where to write the header metadata ('-': standard output)\n" +
           PartitionInput::optionHelp() +
           "  --verbose          print a one-line summary (on stderr with '-o -')\n";
}

void HeaderCommand::declareOptions(ArgumentParser& parser) const {
    parser.addValueOption("output", 'o');
    parser.addFlag("verbose");
    PartitionInput::declareOptions(parser);
}

int HeaderCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    const std::optional<std::string> output = arguments.value("output");
    if (!output) {
        arguments.requirePositionals(1, 1, "FILE");
        throw UsageError("missing -o OUT (use '-o -' for standard output)", synopsis());
    }
    if (output->empty()) {
        throw UsageError("option '--output' needs a file name, not ''", synopsis());
    }
    const PartitionInput input(arguments);
    const PartitionInput::HeaderMetadata metadata = input.readMetadata();
    const bool toStdout = *output == "-";
    const std::uint64_t written = toStdout ? writeToStream(*metadata.partition, out)
                                           : writeToFile(*metadata.partition, *output);
    if (arguments.flag("verbose")) {
        std::ostream& summary = toStdout ? std::cerr : out;
        summary << "wrote " << written << " bytes of header metadata (" << metadata.size
                << " in the file) from partition " << input.partitionIndex() << " ("
                << input.partition().kindName() << ", primer pack at offset " << metadata.offset
                << ") of " << input.path() << " to " << (toStdout ? "standard output" : *output)
                << '\n';
    }
    return 0;
}

} // namespace Vellum::App
