#ifndef VELLUM_APP_SETSCOMMAND_H
#define VELLUM_APP_SETSCOMMAND_H

#include "Command.h"
#include "JsonOutput.h"
#include "PartitionInput.h"

namespace Vellum::Metadata {
class MetadataSet;
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::App {

class TextTable;

/// "vellum sets FILE": one line per set of the header metadata of a partition, in stored
/// order, with the references it holds and where they lead, then the dark metadata sets; with
/// "--json", the same as one JSON document.
class SetsCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::string synopsis() const override;

protected:
    std::string description() const override;
    std::string optionHelp() const override;
    void declareOptions(ArgumentParser& parser) const override;
    /// Reads the header metadata and lists it. Throws what PartitionInput throws.
    int run(const ArgumentParser& arguments, std::ostream& out) override;

private:
    // Adds one note per reference `set` holds, in element order, to `table`.
    static void addReferences(const Metadata::MetadataSet& set,
                              const Metadata::PartitionMetadata& metadata, TextTable& table);
    // The listing as a JSON document.
    static JsonOutput::Document toJson(const PartitionInput& input,
                                       const PartitionInput::HeaderMetadata& header);
    static void printDarkSets(const Metadata::PartitionMetadata& metadata, std::ostream& out);
};

} // namespace Vellum::App

#endif
