#include "SetsCommand.h"

#include "ArgumentParser.h"
#include "PartitionInput.h"
#include "TextTable.h"

#include "Vellum/MXF/PartitionPack.h"
#include "Vellum/MetaMetadata/MetaElement.h"
#include "Vellum/MetaMetadata/MetaMetadataSet.h"
#include "Vellum/Metadata/PartitionMetadata.h"
#include "Vellum/Metadata/ReferenceArrayElement.h"
#include "Vellum/Metadata/ReferenceBatchElement.h"
#include "Vellum/Metadata/ReferenceElement.h"
#include "Vellum/Metadata/Visitors/ElementVisitor.h"
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

// One reference held by an element: the element's name (with the item index for a batch or
// an array), whether it is weak, and the target's instance identifier.
struct HeldReference {
    std::string element;
    bool weak = false;
    Types::UUID target;
};

// Collects the references an element holds.
class ReferenceCollector : public Metadata::Visitors::ElementVisitor {
public:
    explicit ReferenceCollector(std::vector<HeldReference>& found) noexcept
        : m_found(found) {}

    void visit(const Metadata::ReferenceBatchElement& element) override { collection(element); }
    void visit(const Metadata::ReferenceArrayElement& element) override { collection(element); }
    void visit(const Metadata::ReferenceElement& element) override {
        if (element.value() != nullptr) {
            m_found.push_back({elementName(element), isWeak(element), element.value()->uuid()});
        }
    }
    void visit(const Metadata::BatchElement& /*element*/) override {}
    void visit(const Metadata::ArrayElement& /*element*/) override {}
    void visit(const Metadata::SimpleElement& /*element*/) override {}

private:
    static std::string elementName(const Metadata::Element& element) {
        const MetaMetadata::MetaElement* meta = element.metaElement();
        return meta != nullptr ? Utils::wstringToString(meta->name()) : "(unknown)";
    }
    static bool isWeak(const Metadata::Element& element) {
        const MetaMetadata::MetaElement* meta = element.metaElement();
        return meta != nullptr &&
               meta->referenceKind() == MetaMetadata::MetaElement::ReferenceKind::Weak;
    }
    void collection(const Metadata::ReferenceCollectionElement& element) {
        const std::string name = elementName(element);
        for (std::uint32_t i = 0; i < element.size(); ++i) {
            m_found.push_back({name + "[" + std::to_string(i) + "]", isWeak(element),
                               element.referenceAt(i).uuid()});
        }
    }

    std::vector<HeldReference>& m_found;
};

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
    return "vellum sets [--partition P] [--dictionary FILE]... FILE";
}

std::string SetsCommand::description() const {
    return "Lists the sets of the header metadata of one partition of FILE in the order they\n"
           "are stored, one line each: index, set name ('(unknown)' for a local set the\n"
           "dictionary does not know), key, instance UID ('-' if none) and the number of\n"
           "elements that hold a value. Below each set, one line per reference it holds:\n"
           "the element (with the item index in a batch or an array), the instance UID it\n"
           "names, and the name of the set that has that UID ('unknown set' for a set the\n"
           "dictionary does not know), or 'dangling' when none has; weak references are\n"
           "marked. Then one line per dark metadata set: key and length.\n";
}

std::string SetsCommand::optionHelp() const {
    return PartitionInput::optionHelp();
}

void SetsCommand::declareOptions(ArgumentParser& parser) const {
    PartitionInput::declareOptions(parser);
}

int SetsCommand::run(const ArgumentParser& arguments, std::ostream& out) {
    const PartitionInput input(arguments);
    const PartitionInput::HeaderMetadata header = input.readMetadata();
    const Metadata::PartitionMetadata& metadata = *header.partition;
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
    std::vector<HeldReference> references;
    ReferenceCollector collector(references);
    for (const Metadata::Element* element : set.serializationOrder()) {
        element->accept(collector);
    }
    std::size_t width = 0;
    for (const HeldReference& reference : references) {
        width = std::max(width, reference.element.size());
    }
    for (const HeldReference& reference : references) {
        const std::string padding(width - reference.element.size(), ' ');
        table.addNote("       " + reference.element + padding + " -> " +
                      uuidText(reference.target) + " (" + targetText(metadata, reference.target) +
                      (reference.weak ? ", weak)" : ")"));
    }
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
