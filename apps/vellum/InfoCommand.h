#ifndef VELLUM_APP_INFOCOMMAND_H
#define VELLUM_APP_INFOCOMMAND_H

#include "Command.h"
#include "JsonOutput.h"
#include "PartitionInput.h"

#include <cstddef>
#include <map>
#include <string>

namespace Vellum::MXF {
class MXFFile;
} // namespace Vellum::MXF

namespace Vellum::Metadata {
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::App {

/// "vellum info FILE": the partition structure of an MXF file and a summary of the header
/// metadata of one partition (primer entries, sets by name, dark metadata, elements the
/// dictionary does not place); with "--json", the same as one JSON document.
class InfoCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::string synopsis() const override;

protected:
    std::string description() const override;
    std::string optionHelp() const override;
    void declareOptions(ArgumentParser& parser) const override;
    /// Prints the file and its partitions, then reads and summarises the header metadata.
    /// Throws what PartitionInput throws; when the header metadata cannot be read, the error
    /// comes after the file and partition lines are written to `out`.
    int run(const ArgumentParser& arguments, std::ostream& out) override;

private:
    // What the summary of the header metadata counts.
    struct Summary {
        std::map<std::string, std::size_t> byName; // sets by name
        std::size_t unknown = 0;
        std::size_t misplaced = 0;
        std::size_t unreadable = 0;
    };

    static Summary summarise(const Metadata::PartitionMetadata& metadata);
    // Everything the listing shows, as a JSON document.
    static JsonOutput::Document toJson(const PartitionInput& input,
                                       const PartitionInput::HeaderMetadata& header);
    static void printFile(const PartitionInput& input, std::ostream& out);
    static void printPartitions(const MXF::MXFFile& file, std::ostream& out);
    static void printMetadata(const Metadata::PartitionMetadata& metadata, std::ostream& out);
};

} // namespace Vellum::App

#endif
