#include "DiffCommand.h"

#include "ArgumentParser.h"
#include "ErrorPrefix.h"
#include "JsonOutput.h"
#include "PartitionInput.h"
#include "UsageError.h"

#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/Exceptions/BaseException.h"
#include "Vellum/Exceptions/IOError.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/KLV/Key.h"
#include "Vellum/KLV/KeyClassification.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/Metadata/HeaderMetadataComparison.h"
#include "Vellum/Metadata/MetadataDifference.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <iostream>
#include <ostream>
#include <system_error>
#include <vector>

namespace Vellum::App {
namespace {

// Status for trouble, as diff(1) gives it: the other commands use 1 for a failure, which
// here means "different".
constexpr int exitTrouble = 2;
// Values longer than this are cut in the listing (a dark set may hold megabytes).
constexpr std::size_t maxValueCharacters = 200;
// How far into a file its first non-blank byte is looked for.
constexpr std::uint64_t probeBytes = 4096;

std::string cut(const WString& value, std::size_t maxValue) {
    if (value.size() <= maxValue) {
        return Utils::wstringToString(value);
    }
    return Utils::wstringToString(std::u16string_view(value).substr(0, maxValue)) + "... (" +
           std::to_string(value.size() - maxValue) + " more characters)";
}

} // namespace

std::string DiffCommand::name() const {
    return "diff";
}

std::string DiffCommand::summary() const {
    return "compare the header metadata of two files (MXF, XML or KLV)";
}

std::string DiffCommand::synopsis() const {
    return "vellum diff [--partition P] [--dictionary FILE]... [--quiet | --json] A B";
}

std::string DiffCommand::description() const {
    return "Compares the header metadata of A and B and prints one line per difference: a set\n"
           "added, removed or stored under another key, an item added, removed or changed\n"
           "(with the set's name and instance UID, the element's name and the old and new\n"
           "value), a dark metadata set added or removed. Each of A and B is an MXF file (the\n"
           "partition --partition chooses), an XML document as 'vellum to-xml' writes it, or\n"
           "header metadata alone as 'vellum header' writes it, told apart by their first\n"
           "bytes. Sets are matched by instance UID, items by label, values by their stored\n"
           "bytes; set order, local tags and fill do not count. With --json, the result is\n"
           "one JSON document instead, with every value whole. Exit status: 0 equal,\n"
           "1 different, 2 trouble.\n";
}

std::string DiffCommand::optionHelp() const {
    return "  -q, --quiet        print nothing; only the exit status tells\n" +
           PartitionInput::optionHelp() + JsonOutput::optionHelp();
}

void DiffCommand::declareOptions(ArgumentParser& parser) const {
    parser.addFlag("quiet", 'q');
    PartitionInput::declareOptions(parser);
    JsonOutput::declareOption(parser);
}

int DiffCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    arguments.requirePositionals(2, 2, "A and B");
    if (arguments.flag("quiet") && JsonOutput::requested(arguments)) {
        throw UsageError("options '--quiet' and '--json' exclude each other", synopsis());
    }
    const std::string which = arguments.value("partition").value_or("header");
    std::vector<Metadata::MetadataDifference> differences;
    try {
        const auto dictionary = PartitionInput::loadDictionary(arguments);
        const auto before = load(arguments.positionals()[0], which, dictionary);
        const auto after = load(arguments.positionals()[1], which, dictionary);
        differences = Metadata::HeaderMetadataComparison::compare(*before, *after);
    } catch (const Exceptions::BaseException& error) {
        std::cerr << "vellum: error: " << error.utf8Message() << std::endl;
        return exitTrouble;
    } catch (const std::exception& error) {
        std::cerr << "vellum: error: " << error.what() << std::endl;
        return exitTrouble;
    }
    if (JsonOutput::requested(arguments)) {
        JsonOutput::write(toJson(differences), out);
    } else if (!arguments.flag("quiet")) {
        for (const auto& difference : differences) {
            out << describe(difference, maxValueCharacters) << '\n';
        }
    }
    return differences.empty() ? 0 : 1;
}

DiffCommand::SourceKind DiffCommand::detect(const std::string& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        VELLUM_THROW(IOError, "'" + path + "' is a directory, not a file");
    }
    DataIO::File::FileDataSource source(path);
    std::vector<std::uint8_t> head(static_cast<std::size_t>(std::min(source.size(), probeBytes)));
    source.read(head.data(), head.size());
    if (head.size() >= KLV::Key::byteCount &&
        KLV::isPrimerPack(KLV::Key(head.data(), KLV::Key::byteCount))) {
        return SourceKind::HeaderMetadata;
    }
    const auto startsWith = [&head](std::initializer_list<std::uint8_t> bytes) {
        return head.size() >= bytes.size() && std::equal(bytes.begin(), bytes.end(), head.begin());
    };
    if (startsWith({0xEF, 0xBB, 0xBF}) || startsWith({0xFF, 0xFE}) || startsWith({0xFE, 0xFF})) {
        return SourceKind::Xml;
    }
    const auto first = std::find_if(head.begin(), head.end(), [](std::uint8_t byte) {
        return byte != ' ' && byte != '\t' && byte != '\r' && byte != '\n';
    });
    return first != head.end() && *first == '<' ? SourceKind::Xml : SourceKind::Mxf;
}

std::unique_ptr<Metadata::PartitionMetadata>
DiffCommand::load(const std::string& path, const std::string& which,
                  const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary) {
    const SourceKind kind = detect(path);
    if (kind == SourceKind::Xml) {
        auto partition = std::make_unique<Metadata::PartitionMetadata>(dictionary);
        importXml(path, *partition);
        return partition;
    }
    try {
        return kind == SourceKind::HeaderMetadata
                   ? Metadata::PartitionMetadata::readHeaderMetadataFile(path, dictionary)
                   : Metadata::PartitionMetadata::readFile(path, which, dictionary);
    } catch (const Exceptions::BaseException& error) {
        ErrorPrefix::rethrow(error, "'" + path + "': ");
    }
}

void DiffCommand::importXml(const std::string& path, Metadata::PartitionMetadata& partition) {
    const WString widePath = Utils::stringToWstring(path);
    try {
        XML2Partition::getPartitionMetadataFromFile(widePath.c_str(), &partition);
    } catch (const Exceptions::BaseException& error) {
        // Parser errors name the document already; faults in its content do not.
        const std::string name = std::filesystem::path(path).filename().string();
        if (error.utf8Message().find(name) != std::string::npos) {
            throw;
        }
        ErrorPrefix::rethrow(error, "'" + path + "': ");
    }
    // The import skips elements it does not know: a document with none it knows is not
    // header metadata, and comparing it as empty would hide the mistake.
    if (partition.sets().empty() && partition.darkCount() == 0) {
        VELLUM_THROW(InvalidFormat, "'" + path +
                                        "': the document holds no sets of header metadata (no "
                                        "element the dictionary knows)");
    }
}

JsonOutput::Document
DiffCommand::toJson(const std::vector<Metadata::MetadataDifference>& differences) {
    // Empty texts mean "does not apply" in a difference; JSON says so with null.
    const auto text = [](const WString& value) {
        return value.empty() ? JsonOutput::Document(nullptr)
                             : JsonOutput::Document(Utils::wstringToString(value));
    };
    JsonOutput::Document list = JsonOutput::Document::array();
    for (const Metadata::MetadataDifference& difference : differences) {
        list.push_back({{"kind", kindKey(difference.kind)},
                        {"setName", text(difference.setName)},
                        {"setIdentifier", text(difference.setIdentifier)},
                        {"elementName", text(difference.elementName)},
                        {"oldValue", text(difference.oldValue)},
                        {"newValue", text(difference.newValue)}});
    }
    return {{"equal", differences.empty()}, {"differences", std::move(list)}};
}

const char* DiffCommand::kindKey(Metadata::MetadataDifference::Kind kind) noexcept {
    using Kind = Metadata::MetadataDifference::Kind;
    switch (kind) {
    case Kind::SetAdded:
        return "setAdded";
    case Kind::SetRemoved:
        return "setRemoved";
    case Kind::SetKeyChanged:
        return "setKeyChanged";
    case Kind::ItemAdded:
        return "itemAdded";
    case Kind::ItemRemoved:
        return "itemRemoved";
    case Kind::ItemChanged:
        return "itemChanged";
    case Kind::DarkSetAdded:
        return "darkSetAdded";
    case Kind::DarkSetRemoved:
        return "darkSetRemoved";
    }
    return "unknown";
}

std::string DiffCommand::describe(const Metadata::MetadataDifference& difference,
                                  std::size_t maxValue) {
    using Kind = Metadata::MetadataDifference::Kind;
    std::string line = std::string(Metadata::MetadataDifference::kindName(difference.kind)) + ": ";
    line += Utils::wstringToString(difference.setName);
    if (difference.kind == Kind::DarkSetAdded || difference.kind == Kind::DarkSetRemoved) {
        const WString& value =
            difference.kind == Kind::DarkSetAdded ? difference.newValue : difference.oldValue;
        return line + " (" + std::to_string(value.size() / 2) + " bytes): " + cut(value, maxValue);
    }
    line += " " + Utils::wstringToString(difference.setIdentifier);
    if (!difference.elementName.empty()) {
        line += " " + Utils::wstringToString(difference.elementName);
    }
    switch (difference.kind) {
    case Kind::ItemAdded:
        return line + ": " + cut(difference.newValue, maxValue);
    case Kind::ItemRemoved:
        return line + ": " + cut(difference.oldValue, maxValue);
    case Kind::ItemChanged:
    case Kind::SetKeyChanged:
        return line + ": " + cut(difference.oldValue, maxValue) + " -> " +
               cut(difference.newValue, maxValue);
    default:
        return line;
    }
}

} // namespace Vellum::App
