#include "InfoCommand.h"

#include "ArgumentParser.h"
#include "JsonOutput.h"
#include "PartitionInput.h"
#include "TextTable.h"

#include "Vellum/MXF/MXFFile.h"
#include "Vellum/MetaMetadata/AbstractMetaAttribute.h"
#include "Vellum/MetaMetadata/AbstractMetaAttributeVisitor.h"
#include "Vellum/MetaMetadata/Dictionary.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/MetaMetadata/UnknownAttribute.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"

#include <cstddef>
#include <map>
#include <ostream>
#include <string>

namespace Vellum::App {
namespace {

// Counts the elements that the dictionary does not place where they were found. An unknown
// element whose label the dictionary does know holds a value that did not fit the element's
// type (it is kept as raw bytes); it is counted apart from those the dictionary lacks.
class InvalidElementCounter : public MetaMetadata::AbstractMetaAttributeVisitor {
public:
    explicit InvalidElementCounter(const MetaMetadata::Dictionary& dictionary) noexcept
        : m_dictionary(dictionary) {}

    void visit(const MetaMetadata::UnknownAttribute& attribute) override {
        const Types::UniversalLabel* ul = attribute.universalLabel();
        if (ul != nullptr && m_dictionary.findElement(*ul) != nullptr) {
            ++m_unreadable;
        } else {
            ++m_unknown;
        }
    }
    void visit(const MetaMetadata::MisplacedAttribute& /*attribute*/) override { ++m_misplaced; }
    void visit(const MetaMetadata::MetaAttribute& /*attribute*/) override {}

    std::size_t unknown() const noexcept { return m_unknown; }
    std::size_t misplaced() const noexcept { return m_misplaced; }
    std::size_t unreadable() const noexcept { return m_unreadable; }

private:
    const MetaMetadata::Dictionary& m_dictionary;
    std::size_t m_unknown = 0;
    std::size_t m_misplaced = 0;
    std::size_t m_unreadable = 0;
};

std::string setName(const Metadata::MetadataSet& set) {
    if (set.definition() == nullptr) {
        return "(unknown set " + set.key().toUtf8() + ")";
    }
    return Utils::wstringToString(set.definition()->name());
}

// "label:" padded so that the numbers after it line up.
std::string label(const std::string& text) {
    constexpr std::size_t width = 21;
    const std::string withColon = text + ":";
    return withColon.size() >= width ? withColon
                                     : withColon + std::string(width - withColon.size(), ' ');
}

} // namespace

std::string InfoCommand::name() const {
    return "info";
}

std::string InfoCommand::summary() const {
    return "summarise the partitions and the header metadata of an MXF file";
}

std::string InfoCommand::synopsis() const {
    return "vellum info [--partition P] [--dictionary FILE]... [--json] FILE";
}

std::string InfoCommand::description() const {
    return "Prints the file (size, run-in, how its partitions were found, anything that could\n"
           "not be read), one line per partition (index, kind, status, offset, header and\n"
           "index byte counts, body and index stream IDs), and a summary of the header\n"
           "metadata of the chosen partition: primer entries, sets, dark metadata sets, and\n"
           "elements the dictionary does not know (unknown), places in other sets\n"
           "(misplaced), or knows but whose value does not fit its type and is kept as raw\n"
           "bytes (unreadable); then the number of sets of each name. A local set the\n"
           "dictionary does not know is counted as '(unknown set KEY)'. FILE '-' reads\n"
           "standard input.\n";
}

std::string InfoCommand::optionHelp() const {
    return PartitionInput::optionHelp() + JsonOutput::optionHelp();
}

void InfoCommand::declareOptions(ArgumentParser& parser) const {
    PartitionInput::declareOptions(parser);
    JsonOutput::declareOption(parser);
}

int InfoCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    const PartitionInput input(arguments);
    if (JsonOutput::requested(arguments)) {
        const PartitionInput::HeaderMetadata metadata = input.readMetadata();
        JsonOutput::write(toJson(input, metadata), out);
        return 0;
    }
    printFile(input, out);
    printPartitions(input.file(), out);
    out.flush();
    const PartitionInput::HeaderMetadata metadata = input.readMetadata();
    out << "\nheader metadata of partition " << input.partitionIndex() << " ("
        << input.partition().kindName() << "): " << metadata.size << " bytes from offset "
        << metadata.offset << '\n';
    printMetadata(*metadata.partition, out);
    return 0;
}

void InfoCommand::printFile(const PartitionInput& input, std::ostream& out) {
    const MXF::MXFFile& file = input.file();
    out << "file: " << input.path() << " (" << input.fileSize() << " bytes)\n"
        << "run-in: " << file.runInLength() << " bytes\n"
        << "partitions found through: " << file.discovery() << '\n';
    if (file.randomIndexPack()) {
        out << "random index pack: " << file.randomIndexPack()->entries().size()
            << " entries, at offset " << file.randomIndexPack()->offset() << '\n';
    } else {
        out << "random index pack: none\n";
    }
    if (file.problems().empty()) {
        out << "problems: none\n";
    }
    for (const std::string& problem : file.problems()) {
        out << "problem: " << problem << '\n';
    }
}

void InfoCommand::printPartitions(const MXF::MXFFile& file, std::ostream& out) {
    using Align = TextTable::Align;
    TextTable table({{"index", Align::Right},
                     {"kind", Align::Left},
                     {"status", Align::Left},
                     {"offset", Align::Right},
                     {"header bytes", Align::Right},
                     {"index bytes", Align::Right},
                     {"body SID", Align::Right},
                     {"index SID", Align::Right}});
    std::size_t index = 0;
    for (const MXF::PartitionPack& pack : file.partitions()) {
        table.addRow({std::to_string(index++), pack.kindName(), pack.statusName(),
                      std::to_string(pack.offset()), std::to_string(pack.headerByteCount()),
                      std::to_string(pack.indexByteCount()), std::to_string(pack.bodySID()),
                      std::to_string(pack.indexSID())});
    }
    out << "\npartitions: " << file.partitions().size() << '\n';
    table.print(out, "  ");
}

InfoCommand::Summary InfoCommand::summarise(const Metadata::PartitionMetadata& metadata) {
    Summary summary;
    InvalidElementCounter counter(*metadata.partitionDictionary().dictionary());
    for (const Metadata::MetadataSet* set : metadata.sets()) {
        ++summary.byName[setName(*set)];
        for (auto element = set->invalidBegin(); element != set->invalidEnd(); ++element) {
            (*element)->metaAttribute()->accept(counter);
        }
    }
    summary.unknown = counter.unknown();
    summary.misplaced = counter.misplaced();
    summary.unreadable = counter.unreadable();
    return summary;
}

void InfoCommand::printMetadata(const Metadata::PartitionMetadata& metadata, std::ostream& out) {
    const Summary summary = summarise(metadata);
    out << "  " << label("primer entries") << metadata.partitionDictionary().size() << '\n'
        << "  " << label("sets") << metadata.sets().size() << '\n'
        << "  " << label("dark metadata sets") << metadata.darkCount() << '\n'
        << "  " << label("unknown elements") << summary.unknown << '\n'
        << "  " << label("misplaced elements") << summary.misplaced << '\n'
        << "  " << label("unreadable elements") << summary.unreadable << '\n';
    TextTable table({{"count", TextTable::Align::Right}, {"set", TextTable::Align::Left}});
    for (const auto& entry : summary.byName) {
        table.addRow({std::to_string(entry.second), entry.first});
    }
    out << "\nsets by name: " << summary.byName.size() << '\n';
    table.print(out, "  ");
}

JsonOutput::Document InfoCommand::toJson(const PartitionInput& input,
                                         const PartitionInput::HeaderMetadata& header) {
    const MXF::MXFFile& file = input.file();
    JsonOutput::Document randomIndexPack = nullptr;
    if (file.randomIndexPack()) {
        randomIndexPack = {{"entries", file.randomIndexPack()->entries().size()},
                           {"offset", file.randomIndexPack()->offset()}};
    }
    JsonOutput::Document partitions = JsonOutput::Document::array();
    std::size_t index = 0;
    for (const MXF::PartitionPack& pack : file.partitions()) {
        partitions.push_back({{"index", index++},
                              {"kind", pack.kindName()},
                              {"status", pack.statusName()},
                              {"offset", pack.offset()},
                              {"headerByteCount", pack.headerByteCount()},
                              {"indexByteCount", pack.indexByteCount()},
                              {"bodySID", pack.bodySID()},
                              {"indexSID", pack.indexSID()}});
    }
    const Metadata::PartitionMetadata& metadata = *header.partition;
    const Summary summary = summarise(metadata);
    JsonOutput::Document byName = JsonOutput::Document::array();
    for (const auto& entry : summary.byName) {
        byName.push_back({{"name", entry.first}, {"count", entry.second}});
    }
    return {{"file",
             {{"name", input.path()},
              {"size", input.fileSize()},
              {"runIn", file.runInLength()},
              {"partitionsFoundThrough", file.discovery()},
              {"randomIndexPack", std::move(randomIndexPack)},
              {"problems", file.problems()}}},
            {"partitions", std::move(partitions)},
            {"headerMetadata",
             {{"partition", input.partitionIndex()},
              {"kind", input.partition().kindName()},
              {"offset", header.offset},
              {"size", header.size},
              {"primerEntries", metadata.partitionDictionary().size()},
              {"sets", metadata.sets().size()},
              {"darkMetadataSets", metadata.darkCount()},
              {"unknownElements", summary.unknown},
              {"misplacedElements", summary.misplaced},
              {"unreadableElements", summary.unreadable},
              {"setsByName", std::move(byName)}}}};
}

} // namespace Vellum::App
