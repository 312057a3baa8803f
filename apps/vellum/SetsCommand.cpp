#include "SetsCommand.h"

#include "ArgumentParser.h"
#include "JsonOutput.h"
#include "PartitionInput.h"
#include "SetReferences.h"
#include "TextTable.h"

#include "Vellum/MXF/PartitionPack.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Utils/StringConversion.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace Vellum::App {
namespace {

std::string setName(const Metadata::MetadataSet& set) {
    return set.definition() != nullptr ? Utils::wstringToString(set.definition()->name())
                                       : "(unknown)";
}

std::string uuidText(const Types::UUID& uuid) {
    return Utils::wstringToString(uuid.toString());
}

// Where a reference leads: the target's set name ("unknown set" for one the dictionary does
// not know), or "dangling" when no set has its UUID.
std::string targetText(const Metadata::PartitionMetadata& metadata, const Types::UUID& uuid) {
    const Metadata::PartitionMetadata::SetList& targets = metadata.findByInstanceUID(uuid);
    if (targets.empty()) {
        return "dangling";
    }
    const Metadata::MetadataSet& target = *targets.front();
    std::string text = target.definition() != nullptr
                           ? Utils::wstringToString(target.definition()->name())
                           : "unknown set";
    if (targets.size() > 1) {
        text += ", and " + std::to_string(targets.size() - 1) + " more set(s) with this UID";
    }
    return text;
}

} // namespace

std::string SetsCommand::name() const {
    return "sets";
}

std::string SetsCommand::summary() const {
    return "list the sets of the header metadata and their references";
}

std::string SetsCommand::synopsis() const {
    return "vellum sets [--partition P] [--dictionary FILE]... [--json] FILE";
}

std::string SetsCommand::description() const {
    return "Lists the sets of the header metadata of one partition of FILE in the order they\n"
           "are stored, one line each: index, set name ('(unknown)' for a local set the\n"
           "dictionary does not know), key, instance UID ('-' if none) and the number of\n"
           "elements that hold a value. Below each set, one line per reference it holds:\n"
           "the element (with the item index in a batch or an array), the instance UID it\n"
           "names, and the name of the set that has that UID ('unknown set' for a set the\n"
           "dictionary does not know), or 'dangling' when none has; weak references are\n"
           "marked. Then one line per dark metadata set: key and length. FILE '-' reads\n"
           "standard input.\n";
}

std::string SetsCommand::optionHelp() const {
    return PartitionInput::optionHelp() + JsonOutput::optionHelp();
}

void SetsCommand::declareOptions(ArgumentParser& parser) const {
    PartitionInput::declareOptions(parser);
    JsonOutput::declareOption(parser);
}

int SetsCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    const PartitionInput input(arguments);
    const PartitionInput::HeaderMetadata header = input.readMetadata();
    const Metadata::PartitionMetadata& metadata = *header.partition;
    if (JsonOutput::requested(arguments)) {
        JsonOutput::write(toJson(input, header), out);
        return 0;
    }
    using Align = TextTable::Align;
    TextTable table({{"index", Align::Right},
                     {"set", Align::Left},
                     {"key", Align::Left},
                     {"instance UID", Align::Left},
                     {"values", Align::Right}});
    std::size_t index = 0;
    for (const Metadata::MetadataSet* set : metadata.sets()) {
        const Types::UUID* uid = set->instanceUID();
        table.addRow({std::to_string(index++), setName(*set), set->key().toUtf8(),
                      uid != nullptr ? uuidText(*uid) : "-", std::to_string(set->valueCount())});
        addReferences(*set, metadata, table);
    }
    out << "file: " << input.path() << '\n'
        << "header metadata of partition " << input.partitionIndex() << " ("
        << input.partition().kindName() << "): " << header.size << " bytes from offset "
        << header.offset << '\n'
        << "sets: " << metadata.sets().size() << '\n';
    table.print(out, "  ");
    printDarkSets(metadata, out);
    return 0;
}

void SetsCommand::addReferences(const Metadata::MetadataSet& set,
                                const Metadata::PartitionMetadata& metadata, TextTable& table) {
    const std::vector<SetReferences::Reference> references = SetReferences::of(set);
    std::size_t width = 0;
    for (const SetReferences::Reference& reference : references) {
        width = std::max(width, reference.label().size());
    }
    for (const SetReferences::Reference& reference : references) {
        const std::string label = reference.label();
        const std::string padding(width - label.size(), ' ');
        table.addNote("       " + label + padding + " -> " + uuidText(reference.target) + " (" +
                      targetText(metadata, reference.target) + (reference.weak ? ", weak)" : ")"));
    }
}

JsonOutput::Document SetsCommand::toJson(const PartitionInput& input,
                                         const PartitionInput::HeaderMetadata& header) {
    const Metadata::PartitionMetadata& metadata = *header.partition;
    JsonOutput::Document sets = JsonOutput::Document::array();
    std::size_t index = 0;
    for (const Metadata::MetadataSet* set : metadata.sets()) {
        JsonOutput::Document references = JsonOutput::Document::array();
        for (const SetReferences::Reference& reference : SetReferences::of(*set)) {
            const auto& targets = metadata.findByInstanceUID(reference.target);
            const auto* definition = targets.empty() ? nullptr : targets.front()->definition();
            references.push_back(
                {{"element", reference.element},
                 {"item", reference.item ? JsonOutput::Document(*reference.item) : nullptr},
                 {"weak", reference.weak},
                 {"target", JsonOutput::identifier(reference.target)},
                 {"targetSet", definition != nullptr ? JsonOutput::Document(Utils::wstringToString(
                                                           definition->name()))
                                                     : nullptr},
                 {"targetCount", targets.size()}});
        }
        const Types::UUID* uid = set->instanceUID();
        sets.push_back(
            {{"index", index++},
             {"name", set->definition() != nullptr ? JsonOutput::Document(setName(*set)) : nullptr},
             {"key", set->key().toUtf8()},
             {"instanceUID", uid != nullptr ? JsonOutput::Document(uuidText(*uid)) : nullptr},
             {"values", set->valueCount()},
             {"references", std::move(references)}});
    }
    JsonOutput::Document dark = JsonOutput::Document::array();
    for (auto set = metadata.darkBegin(); set != metadata.darkEnd(); ++set) {
        dark.push_back({{"key", (*set)->key().toUtf8()}, {"length", (*set)->value()->size()}});
    }
    return {
        {"file", input.path()},
        {"partition", {{"index", input.partitionIndex()}, {"kind", input.partition().kindName()}}},
        {"headerMetadata", {{"offset", header.offset}, {"size", header.size}}},
        {"sets", std::move(sets)},
        {"darkMetadataSets", std::move(dark)}};
}

void SetsCommand::printDarkSets(const Metadata::PartitionMetadata& metadata, std::ostream& out) {
    out << "dark metadata sets: " << metadata.darkCount() << '\n';
    if (metadata.darkCount() == 0) {
        return;
    }
    TextTable table({{"key", TextTable::Align::Left}, {"length", TextTable::Align::Right}});
    for (auto dark = metadata.darkBegin(); dark != metadata.darkEnd(); ++dark) {
        table.addRow({(*dark)->key().toUtf8(), std::to_string((*dark)->value()->size())});
    }
    table.print(out, "  ");
}

} // namespace Vellum::App
