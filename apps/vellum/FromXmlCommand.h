#ifndef VELLUM_APP_FROMXMLCOMMAND_H
#define VELLUM_APP_FROMXMLCOMMAND_H

#include "Command.h"

#include "Vellum/XMLBuilder/XML2Partition.h"

#include <string>

namespace Vellum::Metadata {
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::App {

class InputFile;

/// "vellum from-xml DOC.xml -o HEADER.klv": imports an XML document of header metadata and
/// writes it as KLV (primer pack and sets), or, with "--xml", as XML again.
class FromXmlCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::string synopsis() const override;

protected:
    std::string description() const override;
    std::string optionHelp() const override;
    void declareOptions(ArgumentParser& parser) const override;
    /// Imports the document into a new partition and writes its header metadata to the
    /// "--output" file (replaced only once every byte is written) or, for "-", to `out`.
    /// Throws UsageError for a bad command line (no "-o" without "--xml", XML options without
    /// "--xml"); IOError for a document or dictionary that cannot be read or an output that
    /// cannot be written; ParseError/InvalidFormat for a malformed document, one the import
    /// cannot map to header metadata, or one without any set.
    int run(const ArgumentParser& arguments, std::ostream& out) override;

private:
    // Reads the XML document `input` into `partition`; throws IOError when it cannot be read,
    // ParseError/InvalidFormat (naming the document) for a malformed one or one the import
    // cannot map, and InvalidFormat when it holds no set.
    static void import(const InputFile& input, Metadata::PartitionMetadata& partition,
                       XML2Partition::Identifiers identifiers = XML2Partition::Identifiers::Keep);
    // Throws UsageError when an option that only shapes XML output is given without --xml.
    void checkXmlOptions(const ArgumentParser& arguments) const;
};

} // namespace Vellum::App

#endif
