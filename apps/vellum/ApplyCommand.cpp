#include "ApplyCommand.h"

#include "ArgumentParser.h"
#include "PartitionInput.h"
#include "UsageError.h"

#include "Vellum/DataIO/File/FileDataSource.h"
#include "Vellum/DataIO/Memory/MemoryDataSink.h"
#include "Vellum/Exceptions/InvalidFormat.h"
#include "Vellum/Exceptions/Throw.h"
#include "Vellum/MXF/HeaderMetadataUpdate.h"
#include "Vellum/MXF/MXFFile.h"
#include "Vellum/MXF/PartitionPack.h"
#include "Vellum/Metadata/HeaderMetadataComparison.h"
#include "Vellum/Metadata/HeaderMetadataMerge.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"
#include "Vellum/XMLBuilder/XML2Partition.h"

#include <cstdio>
#include <map>
#include <memory>
#include <ostream>

namespace Vellum::App {
namespace {

using Partitions = std::map<std::size_t, std::unique_ptr<Metadata::PartitionMetadata>>;

// The indexes of the partitions that carry header metadata ("--partition" names one).
std::vector<std::size_t> partitionsWithHeaderMetadata(const std::string& path,
                                                      const std::optional<std::string>& which) {
    DataIO::File::FileDataSource source(path);
    const MXF::MXFFile file(source);
    const auto& packs = file.partitions();
    if (which) {
        const MXF::PartitionPack& chosen = file.choosePartition(*which);
        for (std::size_t i = 0; i < packs.size(); ++i) {
            if (packs[i].offset() == chosen.offset()) {
                return {i};
            }
        }
    }
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i < packs.size(); ++i) {
        if (packs[i].headerByteCount() != 0) {
            indexes.push_back(i);
        }
    }
    if (indexes.empty()) {
        VELLUM_THROW(InvalidFormat, "'" + path + "' carries no header metadata");
    }
    return indexes;
}

std::vector<std::uint8_t> serialized(Metadata::PartitionMetadata& partition) {
    DataIO::Memory::MemoryDataSink sink;
    partition.serialize(sink);
    return sink.release();
}

// Reads the written file back: each partition must hold exactly the header metadata meant.
void verify(const std::string& path, const Partitions& meant,
            const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary) {
    for (const auto& [index, partition] : meant) {
        const auto written =
            Metadata::PartitionMetadata::readFile(path, std::to_string(index), dictionary);
        const auto differences = Metadata::HeaderMetadataComparison::compare(*partition, *written);
        if (!differences.empty()) {
            VELLUM_THROW(InvalidFormat, "the header metadata written into partition " +
                                            std::to_string(index) + " of '" + path +
                                            "' reads back with " +
                                            std::to_string(differences.size()) +
                                            " differences from what was meant");
        }
    }
}

} // namespace

std::string ApplyCommand::name() const {
    return "apply";
}

std::string ApplyCommand::summary() const {
    return "write an edited XML document back into an MXF file's header metadata";
}

std::string ApplyCommand::synopsis() const {
    return "vellum apply [--partition P] [--reserve N] [--dictionary FILE]... "
           "(-o OUT | --in-place) FILE DOC";
}

std::string ApplyCommand::description() const {
    return "Reads the header metadata of FILE and the XML document DOC (as 'vellum to-xml'\n"
           "wrote it and you edited it), and writes exactly the changes DOC makes (those\n"
           "'vellum diff FILE DOC' reports) into every partition of FILE that carries header\n"
           "metadata, or the one --partition names; essence, index tables and everything\n"
           "else are not touched. Sets and items DOC does not change keep their stored bytes.\n"
           "With --in-place the new header metadata must fit each partition's header\n"
           "metadata space (its trailing fill absorbs the difference): only those bytes\n"
           "change, and when one does not fit nothing is changed. With -o the result is a\n"
           "new file OUT whose header metadata regions grow or shrink as needed (partition\n"
           "packs and random index pack follow); OUT is replaced only when complete and\n"
           "checked. The result is read back and compared with what was meant.\n";
}

std::string ApplyCommand::optionHelp() const {
    return "  -o, --output OUT   write the result to OUT (may be FILE itself)\n"
           "  --in-place         write into FILE, only when the new header metadata fits\n"
           "  --partition P      the only partition to change: header, footer or an index\n"
           "  --reserve N        with -o, leave at least N bytes of fill after the header\n"
           "                     metadata for later in-place edits (default 0)\n"
           "  --dictionary FILE  add the definitions of a dictionary file to the built-in\n"
           "                     ones; may be given more than once\n";
}

void ApplyCommand::declareOptions(ArgumentParser& parser) const {
    parser.addValueOption("output", 'o');
    parser.addFlag("in-place");
    parser.addValueOption("partition");
    parser.addValueOption("reserve");
    parser.addRepeatableOption("dictionary");
}

int ApplyCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    arguments.requirePositionals(2, 2, "FILE and DOC");
    const std::string& path = arguments.positionals()[0];
    const std::string& documentPath = arguments.positionals()[1];
    const std::optional<std::string> output = arguments.value("output");
    const bool inPlace = arguments.flag("in-place");
    if (inPlace == output.has_value()) {
        throw UsageError("give either -o OUT or --in-place", synopsis());
    }
    if (output && output->empty()) {
        throw UsageError("option '--output' needs a file name, not ''", synopsis());
    }
    std::uint64_t reserve = 0;
    if (const auto text = arguments.value("reserve")) {
        if (inPlace) {
            throw UsageError("option '--reserve' needs -o", synopsis());
        }
        if (text->empty() || text->size() > 15 ||
            text->find_first_not_of("0123456789") != std::string::npos) {
            throw UsageError("option '--reserve' needs a number of bytes, not '" + *text + "'",
                             synopsis());
        }
        reserve = std::stoull(*text);
    }

    const auto dictionary = PartitionInput::loadDictionary(arguments);
    const std::optional<std::string> which = arguments.value("partition");
    const std::vector<std::size_t> indexes = partitionsWithHeaderMetadata(path, which);
    const auto base = Metadata::PartitionMetadata::readFile(
        path, which.value_or(std::to_string(indexes.front())), dictionary);
    Metadata::PartitionMetadata edited(dictionary);
    { const DataIO::File::FileDataSource probe(documentPath); } // names a missing document
    XML2Partition::getPartitionMetadataFromFile(Utils::stringToWstring(documentPath).c_str(),
                                                &edited);
    if (edited.sets().empty()) {
        VELLUM_THROW(InvalidFormat, "'" + documentPath + "' holds no sets of header metadata");
    }

    Partitions meant;
    MXF::HeaderMetadataUpdate::Replacements replacements;
    std::size_t changes = 0;
    for (const std::size_t index : indexes) {
        auto partition =
            Metadata::PartitionMetadata::readFile(path, std::to_string(index), dictionary);
        changes += Metadata::HeaderMetadataMerge::apply(*partition, *base, edited);
        partition->dropTrailingFill();
        replacements[index] = serialized(*partition);
        meant.emplace(index, std::move(partition));
    }

    const std::string target = inPlace ? path : *output;
    if (inPlace) {
        MXF::HeaderMetadataUpdate::updateInPlace(path, replacements);
        verify(path, meant, dictionary);
    } else {
        MXF::HeaderMetadataUpdate::rewrite(path, target, replacements, reserve);
        try {
            verify(target, meant, dictionary);
        } catch (...) {
            std::remove(target.c_str());
            throw;
        }
    }
    out << "applied " << changes << (changes == 1 ? " change" : " changes") << " to "
        << indexes.size() << (indexes.size() == 1 ? " partition" : " partitions") << "; "
        << (inPlace ? "updated " : "wrote ") << target << (inPlace ? " in place" : "") << '\n';
    return 0;
}

} // namespace Vellum::App
