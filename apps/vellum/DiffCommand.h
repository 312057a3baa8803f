#ifndef VELLUM_APP_DIFFCOMMAND_H
#define VELLUM_APP_DIFFCOMMAND_H

#include "Command.h"
#include "JsonOutput.h"

#include "Vellum/Metadata/MetadataDifference.h"
#include "Vellum/Templates/Templates.h"

#include <memory>
#include <string>
#include <vector>

namespace Vellum::MetaMetadata {
class Dictionary;
} // namespace Vellum::MetaMetadata

namespace Vellum::Metadata {
class PartitionMetadata;
} // namespace Vellum::Metadata

namespace Vellum::App {

/// "vellum diff A B": compares the header metadata of two sources, each an MXF file, an XML
/// document as "to-xml" writes it, or header metadata alone as "header" writes it. One line
/// per difference, or one JSON document with "--json"; exit status 0 when equal, 1 when
/// different, 2 on trouble, as diff(1).
class DiffCommand : public Command {
public:
    std::string name() const override;
    std::string summary() const override;
    std::string synopsis() const override;

    /// What a source holds, told from its first bytes: a header-metadata file starts with the
    /// primer pack key; an XML document with a byte order mark or, after blanks, '<'; anything
    /// else is read as MXF.
    enum class SourceKind { Mxf, Xml, HeaderMetadata };

    /// The kind of the file at `path`. Throws IOError when it is a directory or cannot be
    /// read.
    static SourceKind detect(const std::string& path);
    /// One line for `difference` (without the line end); values longer than `maxValue`
    /// characters are cut there and marked with the number of characters left out.
    static std::string describe(const Metadata::MetadataDifference& difference,
                                std::size_t maxValue);

    /// The result as a JSON document: "equal" and the list of "differences", each with the
    /// fields of Metadata::MetadataDifference (null where a text is empty).
    static JsonOutput::Document
    toJson(const std::vector<Metadata::MetadataDifference>& differences);
    /// The lowerCamel word for `kind` in JSON ("setAdded", "itemChanged" ...).
    static const char* kindKey(Metadata::MetadataDifference::Kind kind) noexcept;

protected:
    std::string description() const override;
    std::string optionHelp() const override;
    void declareOptions(ArgumentParser& parser) const override;
    /// Reads both sources and prints their differences (nothing with "--quiet"). Returns 0
    /// when they hold equal header metadata, 1 when not. A source that cannot be read is
    /// reported on stderr as the program reports errors, with status 2; a bad command line
    /// throws UsageError (status 2 as well).
    int run(const ArgumentParser& arguments, std::ostream& out) override;

private:
    // Reads the header metadata of the source at `path`; `which` chooses the partition of an
    // MXF file. Errors name the source.
    static std::unique_ptr<Metadata::PartitionMetadata>
    load(const std::string& path, const std::string& which,
         const Templates::SharedPtr<MetaMetadata::Dictionary>& dictionary);
    static void importXml(const std::string& path, Metadata::PartitionMetadata& partition);
};

} // namespace Vellum::App

#endif
