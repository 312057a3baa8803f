#ifndef VELLUM_APP_INFOCOMMAND_H
#define VELLUM_APP_INFOCOMMAND_H

#include "Command.h"

namespace Vellum::MXF {
class MXFFile;
} // namespace Vellum::MXF

namespace Vellum::Metadata {
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::App {

class PartitionInput;

/// "vellum info FILE": the partition structure of an MXF file and a summary of the header
/// metadata of one partition (primer entries, sets by name, dark metadata, elements the
/// dictionary does not place).
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
    static void printFile(const PartitionInput& input, std::ostream& out);
    static void printPartitions(const MXF::MXFFile& file, std::ostream& out);
    static void printMetadata(const Metadata::PartitionMetadata& metadata, std::ostream& out);
};

} // namespace Vellum::App

#endif
